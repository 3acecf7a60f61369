# A recursion without end is an ordinary error that pcall catches, as often as it happens.
def forever(n) r = forever(n + 1) return r end
def ping(n) return pong(n) + 1 end
def pong(n) return ping(n) + 1 end
def outcome(r)
  return [len(r), r[0], r[1], string_end_with?(r[2], "stack overflow")]
end
puts(outcome(pcall(forever, 0)))
puts(outcome(pcall(ping, 0)))
puts(outcome(pcall(forever, 0)))
puts("still running", len(pcall(len, "ok")))
