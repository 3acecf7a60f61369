local n = 10
-- Every permutation of n numbers by swapping in place: recursion around element stores.
local function permute(a, k, size, state)
  if k > size then
    state[1] = (state[1] * 31 + a[1] * 7 + a[size]) % 1000003
    return
  end
  for i = k, size do
    a[k], a[i] = a[i], a[k]
    permute(a, k + 1, size, state)
    a[k], a[i] = a[i], a[k]
  end
end

local a = {}
for i = 1, n do
  a[i] = i - 1
end
local state = { 0 }
permute(a, 1, n, state)
print(state[1])
