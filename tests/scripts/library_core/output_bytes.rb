# Bytes pass unchanged to standard output: UTF-8 text, carriage returns, a NUL byte, a byte that is no text at all.
puts("hé", "a\rb", "tab\there")
puts("[" + string_char(0) + "]", len("[" + string_char(0) + "]"))
print(string_char(255), string_char(10))
