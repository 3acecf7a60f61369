# Roman numerals: writes them, reads them, and checks that both agree.

values = [1000, 900, 500, 400, 100, 90, 50, 40, 10, 9, 5, 4, 1]
signs = ["M", "CM", "D", "CD", "C", "XC", "L", "XL", "X", "IX", "V", "IV", "I"]

# From the largest symbol to the smallest, take as many as fit.
def to_roman(number)
  if type_of(number) != "integer"
    error("not an integer: " + number)
  end
  if number < 1 or number > 3999
    error("no Roman numeral for " + number)
  end
  text = ""
  i = 0
  while number > 0
    while number >= values[i]
      text = text + signs[i]
      number = number - values[i]
    end
    i = i + 1
  end
  return text
end

# A symbol before a larger one is subtracted; any other is added.
worth = map_new()
i = 0
while i < len(values)
  worth[signs[i]] = values[i]
  i = i + 1
end

def from_roman(text)
  number = 0
  i = 0
  while i < len(text)
    this = table_get(worth, text[i])
    if this == nil
      error("not a Roman sign: " + text[i])
    end
    # Beyond the last symbol, the index gives nil, and table_get the default.
    next = table_get(worth, text[i + 1], 0)
    if this < next
      number = number - this
    else
      number = number + this
    end
    i = i + 1
  end
  # Writing the number again shows whether the string was well formed.
  if to_roman(number) != text
    error(text + " should be " + to_roman(number))
  end
  return number
end

numbers = [1, 4, 9, 14, 40, 90, 400, 1066, 1789, 1984, 2024, 3999]
i = 0
while i < len(numbers)
  puts(numbers[i], to_roman(numbers[i]))
  i = i + 1
end

# Every number must survive the round trip.
wrong = 0
longest = ""
n = 1
while n <= 3999
  text = to_roman(n)
  if from_roman(text) != n
    wrong = wrong + 1
  end
  if len(text) > len(longest)
    longest = text
  end
  n = n + 1
end
puts("wrong:", wrong)
puts("the longest:", longest, "=", from_roman(longest))

# For a failed call, pcall returns [true, false, message].
puts(pcall(to_roman, 0)[2])
puts(pcall(to_roman, 4000)[2])
puts(pcall(to_roman, 2.5)[2])
puts(pcall(from_roman, "ABC")[2])
puts(pcall(from_roman, "IIII")[2])
puts(pcall(from_roman, "IC")[2])
