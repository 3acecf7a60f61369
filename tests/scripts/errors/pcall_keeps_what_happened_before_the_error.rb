log = []
state = map_new()
def work()
  array_push(log, "started")
  state["step"] = 1
  def made_on_the_way() return "made" end
  puts("printed")
  x = nil[0]
  array_push(log, "finished")
end
puts(pcall(work))
puts(log, state, made_on_the_way())
