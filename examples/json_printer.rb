# Prints nested arrays and maps in the style of JSON, with and without line breaks.

# Puts a string in quotes, and escapes quotes, backslashes and line feeds inside it.
def quote(text)
  text = string_gsub(text, "\\", "\\\\")
  text = string_gsub(text, "\"", "\\\"")
  text = string_gsub(text, "\n", "\\n")
  return "\"" + text + "\""
end

# The compact form. The function calls itself for nested values.
def compact(value)
  kind = type_of(value)
  if kind == "string"
    return quote(value)
  elsif kind == "array"
    parts = []
    i = 0
    while i < len(value)
      array_push(parts, compact(value[i]))
      i = i + 1
    end
    return "[" + array_join(parts, ",") + "]"
  elsif kind == "map"
    parts = []
    # keys sorts the keys, so the output is always the same.
    names = keys(value)
    i = 0
    while i < len(names)
      array_push(parts, quote(names[i]) + ":" + compact(value[names[i]]))
      i = i + 1
    end
    return "{" + array_join(parts, ",") + "}"
  elsif kind == "nil"
    return "null"
  elsif kind == "function"
    error("a function cannot be printed as JSON")
  end
  # Numbers and booleans look the same in both languages.
  return to_s(value)
end

# The readable form: one element on each line, indented by its depth.
def pretty(value, depth)
  kind = type_of(value)
  if (kind != "array" and kind != "map") or compact(value) == "[]" or compact(value) == "{}"
    return compact(value)
  end
  inner = string_rep("  ", depth + 1)
  parts = []
  # An array has its indices as keys, so one loop serves both kinds.
  names = keys(value)
  i = 0
  while i < len(names)
    text = pretty(value[names[i]], depth + 1)
    if kind == "map"
      text = quote(names[i]) + ": " + text
    end
    array_push(parts, inner + text)
    i = i + 1
  end
  body = "\n" + array_join(parts, ",\n") + "\n" + string_rep("  ", depth)
  if kind == "map"
    return "{" + body + "}"
  end
  return "[" + body + "]"
end

# There are no map literals; maps are filled entry by entry.
author = map_new()
author["name"] = "Ada \"Countess\" Lovelace"
author["born"] = 1815
author["living"] = false

book = map_new()
book["title"] = "Notes\non the Engine"
book["author"] = author
book["prices"] = [12.5, 14, nil]
book["tags"] = ["history", "computing", []]
book["reviews"] = map_new()

puts(compact(book))
puts(pretty(book, 0))

book["printer"] = puts
result = pcall(compact, book)
puts("failed:", result[2])
