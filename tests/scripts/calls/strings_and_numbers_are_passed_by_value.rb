def change(s, n)
  s[0] = "X"
  s = s + "!"
  n = n + 1
  return [s, n]
end
word = "abc"
number = 1
puts(change(word, number), word, number)
