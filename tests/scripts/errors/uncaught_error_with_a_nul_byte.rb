error("a" + string_char(0) + "b" + string_char(255, 10) + "c")
