# A name assigned anywhere in a function is local to it.
x = "global"
def f()
  x = "local"
  return x
end
puts(f(), x)
def g(x)
  x = x + "!"
  return x
end
puts(g("argument"), x)
