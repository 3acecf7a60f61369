n = 120000
# Words looked for, tested and changed in case and ends by the built-in string functions.
def run(rounds)
  text = string_rep("all work and no play makes a dull day ", 40) + "NEEDLE at the end"
  needles = ["dull", "NEEDLE", "missing", "end"]
  total = 0
  i = 0
  while i < rounds
    needle = needles[i % 4]
    place = string_find(text, needle)
    if place != nil
      total = total + place[0]
    end
    if string_include?(text, "day NEEDLE")
      total = total + 1
    end
    low = string_lower(text)
    if string_end_with?(low, "needle at the end")
      total = total + 2
    end
    total = total + len(string_strip("   " + needle + " "))
    total = total + len(string_upper(needle)) + len(string_reverse(low))
    i = i + 1
  end
  return total
end

puts(run(n))
