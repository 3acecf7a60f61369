n = 10
# Every permutation of n numbers by swapping in place: recursion around element stores.


def permute(a, k, size, state):
    if k == size:
        state[0] = (state[0] * 31 + a[0] * 7 + a[size - 1]) % 1000003
        return
    for i in range(k, size):
        a[k], a[i] = a[i], a[k]
        permute(a, k + 1, size, state)
        a[k], a[i] = a[i], a[k]


state = [0]
permute(list(range(n)), 0, n, state)
print(state[0])
