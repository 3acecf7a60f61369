True = "True"
NIL = "NIL"
Not = "Not"
While = "While"
puts(True, NIL, Not, While, true, nil, not 1)
