const n = 150000;
// A map from the numbers 1 to n, filled in one random order and read in another.
function shuffled(count, seed) {
  const a = [];
  for (let i = 1; i <= count; i++) {
    a.push(i);
  }
  for (let i = count - 1; i > 0; i--) {
    seed = (seed * 16807) % 2147483647;
    const j = seed % (i + 1);
    const held = a[i];
    a[i] = a[j];
    a[j] = held;
  }
  return a;
}

function run(count) {
  const first = shuffled(count, 31);
  const second = shuffled(count, 37);
  const m = new Map();
  for (let i = 0; i < count; i++) {
    m.set(first[i], i);
  }
  let sum = 0;
  for (let round = 0; round < 80; round++) {
    for (let i = 0; i < count; i++) {
      sum = (sum * 3 + m.get(second[i])) % 1000003;
    }
  }
  return sum;
}

console.log(run(n));
