ring = [1]
array_push(ring, ring)
def say()
  puts("first", ring, "last")
end
def say_more()
  print("first", ring, "last")
end
def write()
  write_file("output_is_rendered_before_it_is_written.txt", ring)
end
puts(pcall(say), pcall(say_more), pcall(write))
puts(pcall(puts, "first", ring), pcall(print, "first", ring))
puts(file_exists?("output_is_rendered_before_it_is_written.txt"))
table_clear(ring)
