def a() return end
def b() return; 5 end
def c()
  return
  5
end
def d(x) if x then return else return 1 end end
def e(x) if x then return elsif true then return 2 end end
def f() return 1 + 2 end
def g() return [1, 2] end
def h() return -3 end
def i() return not nil end
puts(a(), b(), c(), d(true), d(false), e(true), e(nil), f(), g(), h(), i())
puts(load("return")(), load("5 return")(), load("return 6")(), load("return (7)")(), load("return;8")())
