g = [1]
def reads(a, i)
  x = a[i]
  x = a[0]
  x = a[g]
  x = g[i]
  x = g[0]
  x = g[g]
  x = a[i][0][i]
  x = [1, 2][i]
  x = "text"[0]
  x = a[i + 1]
  return a[-1]
end
def writes(a, i)
  a[i] = 1
  a[0] = i
  a[i] = g
  a["k"] = g
  a[g] = a
  g[i] = i
  g[0] = 0
  g[g] = g
  a[i] = [i]
  a[i + 1] = i + 2
  return a
end
