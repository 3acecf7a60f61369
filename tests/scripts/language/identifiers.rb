# Letters, digits, "_", "?" and "!" after a letter or "_"; no keyword is hidden in a longer word.
_ = 1
_x = 2
x1_y = 3
done? = 4
go! = 5
what?! = 6
If = 7
END = 8
end? = 9
nil! = 10
ifx = 11
def_ = 12
andy = 13
notx = 14
A = 15
a = 16
puts(_, _x, x1_y, done?, go!, what?!, If, END, end?, nil!, ifx, def_, andy, notx, A, a)
