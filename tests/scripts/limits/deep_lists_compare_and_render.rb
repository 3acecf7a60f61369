# Comparing or rendering very deep lists gives its result, or "stack overflow".
def nest(n)
  list = []
  while n > 0 do
    list = [list]
    n = n - 1
  end
  return list
end
a = nest(1000000)
b = nest(1000000)
def same() r = a == b return r end
r = pcall(same)
if len(r) == 2 then puts(r[1]) else puts(string_end_with?(r[2], "stack overflow")) end
r = pcall(to_s, a)
if len(r) == 2 then puts(len(r[1]) == 2000002) else puts(string_end_with?(r[2], "stack overflow")) end
puts(nest(500) == nest(500), nest(500) == nest(501), len(to_s(nest(500))))
