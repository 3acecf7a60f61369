# "error" adds no location.
puts("start")
def fail_with(message)
  error(message)
end
fail_with("something broke")
puts("never")
