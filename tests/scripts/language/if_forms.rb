# "then", "do" or nothing after the condition; on one line or on several.
if true then puts(1) end
if true do puts(2) end
if true puts(3) end
if true
  puts(4)
end
if true then
  puts(5)
end
if true; puts(6) end
if true do; puts(7); end
if false then puts("never") end
if (false) puts("never") end
