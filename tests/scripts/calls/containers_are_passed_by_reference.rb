def change(a, m)
  a[0] = "changed"
  array_push(a, "pushed")
  m["key"] = a
  a = ["local"]
  m = nil
  return a
end
list = [1]
map = map_new()
puts(change(list, map), list, map)
list[0] = "shared"
puts(map)
