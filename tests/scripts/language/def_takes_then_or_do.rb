def a() then return 1 end
def b(x) do return x end
def c do return 3 end
def d then
  return 4
end
def e; return 5; end
puts(a(), b(2), c(), d(), e())
