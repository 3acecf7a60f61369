const n = 900000;
// Quicksort written in the language: element loads, comparisons and swaps, moderate recursion.
function sort(a, low, high) {
  let i = low;
  let j = high;
  const pivot = a[Math.floor((low + high) / 2)];
  while (i <= j) {
    while (a[i] < pivot) {
      i += 1;
    }
    while (pivot < a[j]) {
      j -= 1;
    }
    if (i <= j) {
      const held = a[i];
      a[i] = a[j];
      a[j] = held;
      i += 1;
      j -= 1;
    }
  }
  if (low < j) {
    sort(a, low, j);
  }
  if (i < high) {
    sort(a, i, high);
  }
}

function run(count) {
  const a = [];
  let seed = 42;
  for (let i = 0; i < count; i++) {
    seed = (seed * 16807) % 2147483647;
    a.push(seed);
  }
  sort(a, 0, count - 1);
  let sum = 0;
  for (let i = 0; i < count; i++) {
    sum = (sum * 3 + a[i]) % 1000000007;
  }
  return sum;
}

console.log(run(n));
