# The name is bound when the "def" runs, not before.
puts(pcall(load("later()")))
if false then def never() end end
puts(pcall(load("never()")))
def later() return "now" end
puts(later())
i = 0
while i < 3 do
  def looped() return "looped" end
  i = i + 1
end
puts(looped())
if i == 3 then def picked() return 1 end else def picked() return 2 end end
puts(picked())
