const n = 10;
// Every permutation of n numbers by swapping in place: recursion around element stores.
function permute(a, k, size, state) {
  if (k === size) {
    state[0] = (state[0] * 31 + a[0] * 7 + a[size - 1]) % 1000003;
    return;
  }
  for (let i = k; i < size; i++) {
    let held = a[k];
    a[k] = a[i];
    a[i] = held;
    permute(a, k + 1, size, state);
    held = a[k];
    a[k] = a[i];
    a[i] = held;
  }
}

const a = [];
for (let i = 0; i < n; i++) {
  a.push(i);
}
const state = [0];
permute(a, 0, n, state);
console.log(state[0]);
