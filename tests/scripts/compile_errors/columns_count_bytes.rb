# A tab is one column, a UTF-8 character as many columns as it has bytes, an escape two.
def show(source)
  r = pcall(load, source)
  if len(r) == 3 then puts(r[2]) else puts("compiled") end
end
show("\tx = $")
show("\t\t  $")
show("\"é\" $")
show("'a\\nb' $")
show("'\\'' $")
show("a == b $")
show("a<=b>=c!=d&&e||f $")
show("12.5 12 $")
show("'a\\\nb' $")
show(string_rep("x = 1 ", 1000) + "$")
show(string_char(9, 11, 12, 32) + "$")
