# All 256 bytes pass unchanged, line ends included.
all = ""
i = 0
while i < 256
  all = all + string_char(i)
  i = i + 1
end
puts(write_file("all.bin", all + "\r\n\n\r"), len(read_file("all.bin")))  #=> 260 260
puts(read_file("all.bin") == all + "\r\n\n\r")  #=> true
