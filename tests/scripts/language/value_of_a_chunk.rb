# Without "return" a chunk's value is that of the last expression statement or assignment that ran.
puts(load("")(), load("# nothing")(), load("1 2")(), load("5; nil")())
puts(load("x = 5")(), load("a = [1] a[2] = 7")(), load("s = \"abc\" s[0] = \"x\"")())
puts(load("5 def f() end")(), load("def f() end")())
puts(load("if 1 then 7 end")(), load("3 if false then 4 end")(), load("3 if 9 then end")(), load("if nil then 1 else 2 end")())
puts(load("i = 0 while i < 3 do i = i + 1 end")(), load("8 while false do 9 end")())
puts(load("1 return")(), load("1 return 2")(), load("6 puts()")())
