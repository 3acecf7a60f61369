# The script is a file like any other.
puts(string_start_with?(read_file("script_reads_itself.rb"), "# The script"))  #=> true
