# The eight type names.
puts(type_of(nil))  #=> nil
puts(type_of(1))  #=> integer
puts(type_of(1.0))  #=> float
puts(type_of(true), type_of(false))  #=> boolean boolean
puts(type_of("1"), type_of(""))  #=> string string
puts(type_of([]))  #=> array
puts(type_of(map_new()))  #=> map
def f
end
puts(type_of(f), type_of(len))  #=> function function
puts(type_of(type_of(1)))  #=> string
puts(type_of(6 / 3), type_of(1 + 1), type_of(true + true))  #=> float integer float
