def sign(n)
  if n < 0 then return -1 elsif n == 0 then return end
  return 1; return
  2
end
return sign(5)
