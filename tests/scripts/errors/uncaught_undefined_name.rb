puts("a")
puts(nothing_here?)
