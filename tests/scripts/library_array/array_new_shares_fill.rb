# A container as fill value is the same container in every place.
rows = array_new(2, [0])
row = rows[0]
array_push(row, 1)
puts(rows)  #=> [[0, 1], [0, 1]]
rows[1] = "own"
puts(rows)  #=> [[0, 1], own]
