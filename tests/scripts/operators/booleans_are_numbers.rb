# A boolean is 1 or 0, and arithmetic with one is done in floating point.
puts(true + true, 1 + true, false - 1, true * 3, true / 2, 3 % true)
puts(type_of(true + true), type_of(1 + true), type_of(true * 3), type_of(3 - false))
puts(9007199254740993 + false == 9007199254740992.0)
