const n = 8000;
// Bubble sort: neighbours compared and swapped.
function sort(a) {
  for (let last = a.length - 1; last > 0; last--) {
    for (let i = 0; i < last; i++) {
      if (a[i] > a[i + 1]) {
        const held = a[i];
        a[i] = a[i + 1];
        a[i + 1] = held;
      }
    }
  }
}

function run(count) {
  const a = [];
  let seed = 23;
  for (let i = 0; i < count; i++) {
    seed = (seed * 16807) % 2147483647;
    a.push(seed);
  }
  sort(a);
  let sum = 0;
  for (const value of a) {
    sum = (sum * 3 + value) % 1000000007;
  }
  return sum;
}

console.log(run(n));
