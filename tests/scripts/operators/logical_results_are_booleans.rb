# "and" and "or" give true or false, never an operand.
puts(1 and 2, 1 and nil, nil and 1, "" and [], 0 and 0, false and nil)
puts(nil or 0, nil or false, 1 or nil, false or "x", nil or nil)
puts(1 && 2, 1 && nil, nil || 0, nil || false)
puts(type_of(1 and 2), type_of(nil or "x"))
puts(not 0, not "", not [], not nil, not false, not true, !0, !nil)
