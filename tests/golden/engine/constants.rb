def f
  puts(nil, true, false, 0, 1.0, 0.1, 100000000000000000000000.0, "", "text", 'two "words"', "é")
  puts("sixty bytes are shown of what is longer, and the rest is only counted, so that it fits")
  return 1 + 1
end
