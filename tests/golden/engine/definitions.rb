def outer(a)
  def inner(b)
    return b
  end
  return inner(a)
end
f = outer
def outer(a) return f end
