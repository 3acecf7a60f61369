if n < 0
  "negative"
elsif n == 0
  "zero"
elsif n < 10
else
  "large"
end
n
