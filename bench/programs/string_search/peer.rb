n = 120000
# Words looked for, tested and changed in case and ends by the built-in string functions.
def run(rounds)
  text = "all work and no play makes a dull day " * 40 + "NEEDLE at the end"
  needles = ["dull", "NEEDLE", "missing", "end"]
  total = 0
  i = 0
  while i < rounds
    needle = needles[i % 4]
    place = text.index(needle)
    if place != nil
      total += place + 1
    end
    if text.include?("day NEEDLE")
      total += 1
    end
    low = text.downcase
    if low.end_with?("needle at the end")
      total += 2
    end
    total += ("   " + needle + " ").strip.length
    total += needle.upcase.length + low.reverse.length
    i += 1
  end
  total
end

puts run(n)
