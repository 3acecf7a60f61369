# Arguments that no token asks for are ignored, whatever they are.
puts(string_format("%s", 1, 2, 3), string_format("none", nil), string_format("%%", "x"))  #=> 1 none %
