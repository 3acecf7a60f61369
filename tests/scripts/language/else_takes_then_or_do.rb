if false then puts(1) else then puts(2) end
if false do puts(1) else do puts(2) end
if false puts(1) elsif false do puts(2) else
puts(3) end
