source = "n = n + 1 if n < limit then load(source)() end"
n = 0
limit = 99999
load(source)()
puts(n)
n = 0
limit = 1000000
puts(pcall(load(source)))
puts(n)
# A loaded program that calls itself is one program.
calls = 0
again = load("calls = calls + 1 if calls < 300000 then again() end")
again()
puts(calls)
