puts(nil == nil, 1 == 1, 1 == 2, 1.5 == 1.5, true == true, true == false, "a" == "a", "a" == "b", "" == "")
puts(1 != 1, 1 != 2, nil != nil, "a" != "a", "a" != "A")
# Integers compare exactly, and so do floats.
puts(9007199254740993 == 9007199254740992, 0.1 + 0.2 == 0.3, 1.0 == 1.0000000000000002, 0.0 == -0.0)
puts("ab" == "abc", "abc" == "ab", string_char(97, 0) == "a", string_char(0) == string_char(0))
