# The first script: text, a value computed on the way, a function and a loop.
# Run it with:  morveltesk examples/hello.rb

puts("Hello, world!")

# Variables need no declaration. "+" joins text as soon as one side is a string.
name = "reader"
puts("Hello, " + name + "!")

# A function is defined with def and called with parentheses.
def greet(who, times)
  return string_rep("Hi ", times) + who
end

puts(greet("there", 2))

# while is the only loop; the counter is ours to keep.
count = 3
while count > 0
  puts("counting down:", count)
  count = count - 1
end

puts("This is", _VERSION)
