if a then b end
if c
  d = 1
else
  d = 2
end
