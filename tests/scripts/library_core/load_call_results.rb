# A chunk can be called many times, stored in a container, and called from there.
chunks = [load("n = n + 1"), load("return n * 10")]
n = 0
chunks[0]()
chunks[0]()
puts(chunks[1](), n)  #=> 20 2
