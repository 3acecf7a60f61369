# What a failing function did before the error stays done.
log = []
def work(list)
  array_push(list, "started")
  counter = 1
  total = counter + list
  array_push(list, "finished")
end
puts(pcall(work, log))
#=> [true, false, pcall_effects_stay.rb:6: operator '+' expects numbers, strings, or arrays]
puts(log)  #=> [started]
