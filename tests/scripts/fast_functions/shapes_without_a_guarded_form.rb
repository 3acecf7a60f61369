# Three elements after a failure show that the function runs as an ordinary one.
message = "e"
def filled_else(x) if x then error("e") else y = 1 end return 1 end
def with_elsif(x) if x then error("e") elsif x then error("e") end return 1 end
def two_guards(x) if x then error("e") end if x then error("e") end return 1 end
def no_return(x) if x then error("e") end 1 end
def variable_message(x) if x then error(message) end return 1 end
def number_message(x) if x then error(1) end return 1 end
def computed_message(x) if x then error("e" + "") end return 1 end
def no_message(x) if x then error() end return 1 end
def statement_before(x) y = 1 if x then error("e") end return 1 end
def statement_after(x) if x then error("e") end y = 1 return 1 end
def statement_beside(x) if x then y = 1 error("e") end return 1 end
def returned_error(x) if x then return error("e") end return 1 end
def call_in_guard(x) if to_s(x) then error("e") end return 1 end
def call_in_body(x) if x then error("e") end return to_s(x) end
def index_in_guard(x) if [x][0] then error("e") end return 1 end
def index_in_body(x) if x then error("e") end return [x][0] end
def and_in_guard(x) if x and x then error("e") end return 1 end
def or_in_body(x) if x then error("e") end return x or x end
def loop_guard(x) while x do error("e") end return 1 end
def inner_return(x) if x then error("e") end return 1 return 2 end
def other_name(x) if x then fail("e") end return 1 end
fail = error
puts(pcall(filled_else, 1), pcall(with_elsif, 1), pcall(two_guards, 1), pcall(no_return, 1))
puts(pcall(variable_message, 1), pcall(number_message, 1), pcall(computed_message, 1), pcall(no_message, 1))
puts(pcall(statement_before, 1), pcall(statement_after, 1), pcall(statement_beside, 1), pcall(returned_error, 1))
puts(pcall(call_in_guard, 1), pcall(call_in_body, 1), pcall(index_in_guard, 1), pcall(index_in_body, 1))
puts(pcall(and_in_guard, 1), pcall(or_in_body, 1), pcall(loop_guard, 1), pcall(inner_return, 1), pcall(other_name, 1))
