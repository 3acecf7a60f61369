x = 'a\
b'
