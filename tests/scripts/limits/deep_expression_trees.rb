# A one-expression function over a tree of many levels gives its value, or says that it cannot.
def call_deep() r = deep(1) return r end
def answer(source, value)
  load(source)()
  r = pcall(call_deep)
  if len(r) == 3 then return string_end_with?(r[2], "stack overflow") end
  return r[1] == value
end
puts(answer("def deep(x) return x" + string_rep(" + x", 400000) + " end", 400001))
puts(answer("def deep(x) if x" + string_rep(" + x", 400000) + " < 0 then error(\"e\") end return x" + string_rep(" - x", 400000) + " end", 1 - 400000))
puts("still running")
