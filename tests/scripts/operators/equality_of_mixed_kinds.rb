# Numbers of different kinds are equal within 2 to the power -52; all other mixed pairs differ.
puts(1 == 1.0, 1.0 == 1, true == 1, 1 == true, true == 1.0, false == 0, false == -0.0, true == 2)
puts(1 == 1.0000000000000002, 1 == 1.0000000000000004, true == 1.0000000000000002, 0 == 0.0000000000000002)
puts(9007199254740993 == 9007199254740992.0, 9223372036854775807 == 9223372036854775807.0)
puts(0 == nil, false == nil, nil == "nil", "1" == 1, 1 == "1", "" == nil, [] == nil, [] == map_new(), [] == "[]", puts == "puts", "true" == true)
puts(1 != 1.0, 0 != nil, "1" != 1)
