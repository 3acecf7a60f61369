def even?(n) return n % 2 == 0 end
empty?=even?(4)
puts(even?(3), empty?)
puts(string_include?("abc", "b"))
