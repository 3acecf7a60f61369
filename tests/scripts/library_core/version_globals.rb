# The two version globals are strings, and plain variables like any other.
puts(_VERSION)  #=> MorvelTesk 0.2
puts(MORVELTESK_VERSION)  #=> 0.2
puts(type_of(_VERSION), type_of(MORVELTESK_VERSION))  #=> string string
_VERSION = "changed"
puts(_VERSION)  #=> changed
