# Both kinds of quotes behave alike.
puts("it's", 'say "hi"', "", '')
puts('it\'s', "say \"hi\"", "a\'b", 'a\"b')
puts(len(""), len('a'))
