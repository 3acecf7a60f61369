# A key that has no text fails without a location.
m = map_new()
def get(k) r = m[k] return r end
def put(k) m[k] = 1 end
puts(pcall(get, [1]))
puts(pcall(get, map_new()))
puts(pcall(get, puts))
puts(pcall(put, []))
puts(pcall(put, m))
puts(pcall(put, put))
puts(m)
