if true then
  puts(1)
