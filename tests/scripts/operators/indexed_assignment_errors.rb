def put(c, i, v) c[i] = v end
puts(pcall(put, [1], -1, 0))
puts(pcall(put, [1], -1.5, 0))
puts(pcall(put, [1], "0", 0))
puts(pcall(put, [1], nil, 0))
puts(pcall(put, [1], [0], 0))
puts(pcall(put, 5, 0, 0))
puts(pcall(put, nil, 0, 0))
puts(pcall(put, 1.5, 0, 0))
puts(pcall(put, true, 0, 0))
puts(pcall(put, puts, 0, 0))
# The index is looked at before the container.
puts(pcall(put, nil, "k", 0))
puts(pcall(put, nil, -1, 0))
