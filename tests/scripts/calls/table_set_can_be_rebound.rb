builtin = table_set
def table_set(t, k, v) return "mine" end
a = [1]
puts(table_set(a, 0, 2), a)
puts(builtin(a, 0, 2), a)
