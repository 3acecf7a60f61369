# Where a result has the same bytes as the argument, changing one still leaves the other alone.
text = "abc"
m = map_new()
m["k"] = text
results = [to_s(text), string_sub(text, 1), string_sub(text, -3, 3), string_rep(text, 1), string_reverse("cba")]
array_push(results, string_lower(text), string_strip(text), string_lstrip(text), string_rstrip(text))
array_push(results, string_gsub(text, "", "-"), string_gsub(text, "x", "-"), string_gsub(text, "%d", "-"))
array_push(results, string_match(text, text), string_gmatch(text, text)[0], string_format(text), string_format("%s", text))
array_push(results, string_split(text, ",")[0], string_split(text, "", 1)[0], string_split(text, ",", 1)[0])
array_push(results, array_join([text]), table_concat([text], "-"), m["k"], table_get(m, "k"), values(m)[0])
i = 0
changed = 0
while i < len(results)
  copy = results[i]
  copy[0] = "X"
  if copy == "Xbc" and results[i] == "abc" and text == "abc"
    changed = changed + 1
  end
  i = i + 1
end
puts(changed, len(results), text, m)  #=> 24 24 abc {k: abc}

# Short results are no exception: whoever asks for the same bytes again gets them unchanged.
def first_letter(word)
  letter = string_sub(word, 1, 1)
  before = letter + ""
  letter[0] = "X"
  return before + letter
end
puts(first_letter("abc"), first_letter("abc"), string_sub("abc", 1, 1))  #=> aX aX a
piece = string_split("a-b", "-")[0]
piece[0] = "Y"
puts(piece, string_split("a-b", "-"), string_sub("a", 1))  #=> Y [a, b] a
letter = text[0]
letter[0] = "Z"
puts(letter, text[0], text, string_char(97))  #=> Z a abc a
