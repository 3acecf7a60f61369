n = "global"
def f()
  i = 0
  seen = ""
  while i < 3 do
    seen = seen + n + ","
    n = i
    i = i + 1
  end
  return seen
end
puts(f(), n)
