# A function that is one guard with a fixed message and one returned expression reports in two elements.
def half(x)
  if x < 0
    error("negative")
  end
  return x / 2
end
puts(pcall(half, 5))  #=> [true, 2.5]
puts(pcall(half, -1))  #=> [false, negative]
puts(pcall(half))  #=> [false, function 'half' expected 1 arguments but received 0]
puts(pcall(half, 1, 2))  #=> [false, function 'half' expected 1 arguments but received 2]
# Other errors of such a function are not caught by the pcall that protects it.
puts(pcall(pcall, half, "a"))
#=> [true, false, pcall_guarded_function.rb:3: ordered comparisons require matching numeric or string values]
