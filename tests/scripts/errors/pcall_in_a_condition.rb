def check(x) if x == 3 then error("three") end y = x return y end
i = 0
while len(pcall(check, i)) == 2 do i = i + 1 end
puts(i)
if pcall(check, 3)[0] then puts("first element is always true for such functions") end
