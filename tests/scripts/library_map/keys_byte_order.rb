# Bytes count as unsigned, a NUL byte is the smallest, the empty key comes first.
m = map_new()
m[string_char(255)] = 1
m["z"] = 2
m["Z"] = 3
m["a" + string_char(0)] = 4
m["a"] = 5
m[""] = 6
sorted = keys(m)
puts(len(sorted), len(sorted[0]), sorted[1], sorted[2], len(sorted[3]), sorted[4], string_byte(sorted[5]))
#=> 6 0 Z a 2 z [255]
