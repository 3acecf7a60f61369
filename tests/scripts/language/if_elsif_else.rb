def grade(n)
  if n >= 90 then
    "A"
  elsif n >= 80
    "B"
  elsif n >= 70 do "C"
  elsif n >= 60 then "D" else
    "F"
  end
end
puts(grade(95), grade(90), grade(85), grade(72), grade(60), grade(3))
