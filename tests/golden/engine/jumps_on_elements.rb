g = [1]
def elements(a, i)
  if a[i] then puts(1) end
  if a[0] then puts(2) end
  if a[g] then puts(3) end
  if g[i] then puts(4) end
  if g[0] then puts(5) end
  if g[g] then puts(6) end
  if not a[i] then puts(7) end
  if a[i][0] then puts(8) end
  if a[i] == 0 then puts(9) end
  if a[i + 1] then puts(10) end
  return 0
end
