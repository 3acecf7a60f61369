n = 10
# Every permutation of n numbers by swapping in place: recursion around element stores.
def permute(a, k, size, state)
  if k == size
    state[0] = (state[0] * 31 + a[0] * 7 + a[size - 1]) % 1000003
    return nil
  end
  i = k
  while i < size
    held = a[k]
    a[k] = a[i]
    a[i] = held
    permute(a, k + 1, size, state)
    held = a[k]
    a[k] = a[i]
    a[i] = held
    i = i + 1
  end
end

state = [0]
permute(range(n), 0, n, state)
puts(state[0])
