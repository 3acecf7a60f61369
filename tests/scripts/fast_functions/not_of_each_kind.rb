def inverted(x) return !x end
def twice(x) return not not x end
puts(inverted(0), inverted(""), inverted([]), inverted(0.0), inverted(nil), inverted(false), inverted(true), inverted(puts))
puts(twice(0), twice(nil), twice(false), twice("x"))
