puts(true || false and false, true or false && false)
puts(false && true or true, false and true || true)
puts(1 and 1 && nil or nil || 1)
puts(!true == not true, not false == !false)
