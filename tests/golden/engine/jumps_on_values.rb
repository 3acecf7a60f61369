g = 1
def values(a)
  if a then puts(1) end
  if not a then puts(2) end
  if g then puts(3) end
  if not g then puts(4) end
  if a() then puts(5) end
  if not a() then puts(6) end
  if a + 1 then puts(7) end
  if -a then puts(8) end
  if not not a then puts(9) end
  return 0
end
def constants
  if true then puts(1) end
  if false then puts(2) end
  if nil then puts(3) else puts(4) end
  if not 1 then puts(5) end
  while true do puts(6) end
end
