i = 0
while i < 2 do i = i + 1 end
puts(i)
while i < 4 then i = i + 1 end
puts(i)
while i < 6 i = i + 1 end
puts(i)
while i < 8
  i = i + 1
end
puts(i)
while i < 10; i = i + 1; end
puts(i)
while false do puts("never") end
while nil do puts("never") end
