const n = 100000;
// Maps filled from the largest number down to 1, and read in that order.
function run(count) {
  let sum = 0;
  for (let round = 0; round < 50; round++) {
    const m = new Map();
    for (let i = count; i > 0; i--) {
      m.set(i, i + round);
    }
    for (let i = count; i > 0; i--) {
      sum = (sum * 3 + m.get(i)) % 1000003;
    }
  }
  return sum;
}

console.log(run(n));
