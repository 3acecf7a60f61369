# The format and the texts may hold any bytes.
nul = string_char(0)
text = string_format("a" + nul + "%s" + nul, nul)
puts(string_byte(text, 1, -1), string_format("é%sü", "ö"), len(string_format("%s", string_rep("x", 100000))))
#=> [97, 0, 0, 0] éöü 100000
