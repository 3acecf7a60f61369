def join(a, b, c) s = a + "-" + b + "-" + c return s end
puts(pcall(join, 1, nil, [2]))
def change(list, text)
  list[0] = "changed"
  text[0] = "X"
  return text
end
l = ["old"]
t = "abc"
puts(pcall(change, l, t), l, t)
