# The first script: strings, a computed value, a function and a loop.
# Run it with:  morveltesk examples/hello.rb

puts("Hello, world!")

# Variables need no declaration. "+" concatenates if either side is a string.
name = "reader"
puts("Hello, " + name + "!")

# A function is defined with def and called with parentheses.
def greet(who, times)
  return string_rep("Hi ", times) + who
end

puts(greet("there", 2))

# while is the only loop, so we keep the counter ourselves.
count = 3
while count > 0
  puts("counting down:", count)
  count = count - 1
end

puts("This is", _VERSION)
