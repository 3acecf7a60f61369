local n = 400000
-- An interpreter's loop over an array of codes: an operation and two operands each, registers in an array.
-- The code adds up the greatest common divisors of 360360 and every number up to n.
local function execute(code, registers)
  local pc = 1
  while true do
    local operation = code[pc]
    local x = code[pc + 1]
    local y = code[pc + 2]
    pc = pc + 3
    if operation == 1 then
      registers[x] = registers[y]
    elseif operation == 2 then
      registers[x] = registers[x] % registers[y]
    elseif operation == 3 then
      if registers[x] == 0 then
        pc = y
      end
    elseif operation == 4 then
      pc = x
    elseif operation == 5 then
      registers[x] = registers[x] + registers[y]
    elseif operation == 6 then
      registers[x] = registers[x] - y
    else
      return registers[x]
    end
  end
end

local code = {
  3, 1, 37,
  1, 3, 1, 1, 4, 5,
  3, 3, 28, 1, 6, 4, 2, 6, 3, 1, 4, 3, 1, 3, 6, 4, 10, 0,
  5, 2, 4, 6, 1, 1, 4, 1, 0,
  0, 2, 0,
}
print(execute(code, { n, 0, 0, 0, 360360, 0 }))
