# All pairs of short texts, which are listed in their order, compared in conditions and as values.
texts = ["", string_char(0), string_char(0, 0), string_char(0, 97), string_char(1), "A", "a", string_char(97, 0), "aa", "ab", "b"]
array_push(texts, "ba")
array_push(texts, string_char(127))
array_push(texts, string_char(128))
array_push(texts, string_char(255))
array_push(texts, string_char(255, 0))

def compare(a, b)
  found = [a < b, a <= b, a == b, a != b, a >= b, a > b]
  if a < b then array_push(found, 1) end
  if a <= b then array_push(found, 2) end
  if a == b then array_push(found, 3) end
  if a != b then array_push(found, 4) end
  if a >= b then array_push(found, 5) end
  if a > b then array_push(found, 6) end
  return found
end

smaller = [true, true, false, true, false, false, 1, 2, 4]
equal = [false, true, true, false, true, false, 2, 3, 5]
greater = [false, false, false, true, true, true, 4, 5, 6]
wrong = 0
i = 0
while i < len(texts)
  j = 0
  while j < len(texts)
    # The second text of its own, and the one of another text's bytes.
    own = string_sub("x" + texts[j], 2)
    expected = equal
    if i < j then expected = smaller end
    if i > j then expected = greater end
    if compare(texts[i], texts[j]) != expected or compare(texts[i], own) != expected
      puts("wrong:", i, j)
      wrong = wrong + 1
    end
    j = j + 1
  end
  i = i + 1
end
puts(wrong)

# Bytes taken from a text, each compared with literals.
def kinds(text)
  counts = [0, 0, 0, 0]
  i = 0
  while i < len(text)
    c = text[i]
    if c >= "0" and c <= "9"
      counts[0] = counts[0] + 1
    elsif (c >= "a" and c <= "z") or c == "_"
      counts[1] = counts[1] + 1
    elsif c == " " or c == "\n" or c == "\t"
      counts[2] = counts[2] + 1
    elsif not (c < "{" or c > "~")
      counts[3] = counts[3] + 1
    end
    i = i + 1
  end
  return counts
end
puts(kinds("a_1 = b2 + {30}\n\t`/:@[|"))
