# comment
puts(1)

if true
puts(2) # comment
end
x = nil + 1
