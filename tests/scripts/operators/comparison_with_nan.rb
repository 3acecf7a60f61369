nan = to_f("nan")
puts(nan < 1, nan <= 1, nan > 1, nan >= 1, 1 < nan, 1 >= nan, nan <= nan, nan >= nan)
