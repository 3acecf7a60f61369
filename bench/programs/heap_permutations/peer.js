const n = 10;
// Heap's algorithm: every permutation by one swap from the last, the array passed to small functions.
function swap(a, i, j) {
  const held = a[i];
  a[i] = a[j];
  a[j] = held;
}

function visit(a, totals) {
  totals[0] += 1;
  totals[1] = (totals[1] * 31 + a[0] * 7 + a[1]) % 1000003;
}

function permute(size, a, totals) {
  if (size === 1) {
    visit(a, totals);
    return;
  }
  for (let i = 1; i < size; i++) {
    permute(size - 1, a, totals);
    if (size % 2 === 0) {
      swap(a, i - 1, size - 1);
    } else {
      swap(a, 0, size - 1);
    }
  }
  permute(size - 1, a, totals);
}

const totals = [0, 0];
permute(n, [...Array(n).keys()], totals);
console.log(totals[0]);
console.log(totals[1]);
