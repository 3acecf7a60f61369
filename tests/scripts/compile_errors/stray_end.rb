if true then
  puts(1)
end
end
