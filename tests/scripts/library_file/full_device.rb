# A device without room: the failure is noticed before success is reported.
puts(pcall(write_file, "/dev/full", "text"))  #=> [true, false, failed to write file: /dev/full]
puts(pcall(append_file, "/dev/full", "text"))  #=> [true, false, failed to append file: /dev/full]
