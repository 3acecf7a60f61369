def f(x) do if x do 1 else then 2 end end x = 1 y = 2 f(x) if y then end
