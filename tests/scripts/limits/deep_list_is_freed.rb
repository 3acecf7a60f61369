# A list nested a million deep goes away without trouble, from a variable, a map and an array.
def nest(n)
  list = []
  while n > 0 do
    list = [list]
    n = n - 1
  end
  return list
end
a = nest(1000000)
a = nil
m = map_new()
m["list"] = nest(300000)
map_delete(m, "list")
b = [nest(300000), nest(300000)]
b[0] = 1
table_clear(b)
puts("freed")
kept = nest(1000000)
puts("kept to the end")
