def outer(n)
  def inner(n)
    return n * 2
  end
  return inner(n) + 1
end
def last return outer(1) end
