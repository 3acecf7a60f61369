# Two elements after a failure show that the function has the guarded form.
def no_then(x) if x error("e") end return 1 end
def separators(x); if x then; error("e"); end; return 1; end
def empty_else(x) if x then error("e") else end return 1 end
def bare_return(x) if x then error("e") end return end
def negated(x) if not (x != 1) then error("e") end return 1 end
def with_globals(x) if x == limit then error("e") end return limit end
def array_body(x) if x then error("e") end return [x, [x]] end
def no_parameters() if limit then error("e") end return 1 end
limit = 5
puts(pcall(no_then, 1), pcall(separators, 1), pcall(empty_else, 1), pcall(bare_return, 1))
puts(pcall(negated, 1), pcall(with_globals, 5), pcall(array_body, 1), pcall(no_parameters))
puts(pcall(no_then, nil), pcall(separators, nil), pcall(empty_else, nil), pcall(bare_return, nil))
puts(pcall(with_globals, 4), pcall(array_body, nil))
