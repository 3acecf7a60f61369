puts(1 + 2 * 3, (1 + 2) * 3, 2 * 3 + 4 * 5, 10 - 6 / 3, 1 + 7 % 4)
puts(1 + 1 < 3, 2 < 3 == true, 1 == 2 == false, 3 > 2 != false)
puts(true or false and false, (true or false) and false, false and true or true)
puts(1 + 2 == 3 and 2 * 2 == 4 or false)
