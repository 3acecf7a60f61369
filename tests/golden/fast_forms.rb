def expression(a) return [a, limit * 2, !a] end
def guarded(x)
  if x < 0 then
    error("negative")
  end
  return x / 2
end
def has_else(x) if x then error("m") else 1 end return x end
def has_call(x) return len(x) end
