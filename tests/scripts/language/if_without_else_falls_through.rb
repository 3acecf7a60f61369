x = 0
if false then x = 1 elsif nil then x = 2 end
puts(x)
if false then x = 1 else end
puts(x)
if true then else x = 3 end
puts(x)
