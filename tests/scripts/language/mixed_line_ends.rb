x = 1


y = nil + 1