const n = 150000;
// A map from the numbers 1 to n in their order: filled, updated and read.
function run(count) {
  const m = new Map();
  for (let i = 1; i <= count; i++) {
    m.set(i, (i * i) % 1009);
  }
  for (let round = 0; round < 200; round++) {
    for (let i = 1; i <= count; i++) {
      m.set(i, m.get(i) + round);
    }
  }
  let sum = 0;
  for (let i = 1; i <= count; i++) {
    sum = (sum * 3 + m.get(i)) % 1000003;
  }
  return sum;
}

console.log(run(n));
