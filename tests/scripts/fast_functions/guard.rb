def half(x) if x < 0 then error("negative") end return x / 2 end
puts(half(3), half(0))
def safe_divide(a, b)
  if b == 0
    error("cannot divide by zero")
  end
  return a / b
end
puts(safe_divide(6, 3))
def checked() safe_divide(1, 0) end
puts(pcall(checked))
puts("last")
half(-1)
puts("never")
