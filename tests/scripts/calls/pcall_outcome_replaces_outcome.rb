# The variable that held one outcome gets the next, whoever else holds the old one.
def same(x)
  return x
end

def local_outcomes()
  outcome = pcall(same, 1)
  kept = outcome
  outcome = pcall(same, 2)
  puts(kept, outcome)
  outcome = pcall(same, outcome)
  puts(outcome)
  outcome = [same, "not an outcome"]
  outcome = pcall(same, "one")
  outcome = pcall(same, outcome[1])
  puts(outcome, kept)
  outcome = pcall(error, "failed")
  outcome = pcall(same, nil)
  puts(outcome)
end

local_outcomes()
outcome = [1, 2]
inside = [outcome]
outcome = pcall(same, outcome)
puts(outcome, inside)
outcome = pcall(same, 3)
puts(outcome, inside)
