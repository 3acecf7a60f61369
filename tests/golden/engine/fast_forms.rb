def expression(a, b) return a * b + 1 end
def list(a) return [a, [1, 2]] end
def global(a) return a + limit end
def guarded(a, b)
  if b == 0 then error("divided by zero") end
  return a / b
end
def guarded_by_name(a, error)
  if a then error("no") end
  return error
end
limit = 3
