# The right side of a condition may be left out only where nobody can tell.
def leap(y)
  return y % 4 == 0 and (y % 100 != 0 or y % 400 == 0)
end
def leap_if(y)
  if y % 4 == 0 and (y % 100 != 0 or y % 400 == 0) then return true end
  return false
end
def leap_unless(y)
  if not (y % 4 == 0 and (y % 100 != 0 or y % 400 == 0)) then return false end
  return true
end
def leap_or(y)
  if y % 4 != 0 or (y % 100 == 0 and y % 400 != 0) then return false end
  return true
end
years = [1900, 1999, 2000, 2023, 2024, -4, -100, 0, 8.0, 8.5, true, false]
i = 0
while i < len(years)
  y = years[i]
  expected = pcall(leap, y)
  if to_s(pcall(leap_if, y)) != to_s(expected) then puts(y) end
  if to_s(pcall(leap_unless, y)) != to_s(expected) then puts(y) end
  if to_s(pcall(leap_or, y)) != to_s(expected) then puts(y) end
  i = i + 1
end
puts(leap_if(1900), leap_if(2000), leap_if(2023), leap_if(2024)) #=> false true false true
load("def other(y, z) if y % 4 == 0 and (z % 100 != 0 or z % 400 == 0) then return 1 end return 2 end", "t")()
puts(pcall(other, 1, "z")) #=> [true, false, t:1: operator '%' expects numeric values]
load("def zero(y) if y % 4 == 0 and (y % 0 != 0 or y % 400 == 0) then return 1 end return 2 end", "t")()
puts(pcall(zero, 1)) #=> [true, false, t:1: modulo by zero]
load("def changed(y) if y % 4 == 0 then y = 'text' end if (y == 1 and y % 4 == 0) and y % 8 == 0 then return 1 end end", "t")()
puts(pcall(changed, 4)) #=> [true, false, t:1: operator '%' expects numeric values]
# A condition of any length.
terms = string_rep(" and (i % 3 == 0 or i % 5 == 0)", 60000)
load("def long(i) if i % 4 == 0" + terms + " then return 1 end return 2 end", "t")()
puts(long(60), long(61)) #=> 1 2
