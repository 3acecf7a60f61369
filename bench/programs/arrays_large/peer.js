const n = 300000;
// Large arrays made at once and grown by pushing, each dropped when the next one is there.
function filled(size, seed) {
  const a = new Array(size).fill(0);
  for (let i = 0; i < size; i++) {
    a[i] = i + seed;
  }
  return a;
}

function grown(size, seed) {
  const a = [];
  for (let i = 0; i < size; i++) {
    a.push(i * seed);
  }
  return a;
}

function run(size) {
  let total = 0;
  for (let round = 1; round <= 40; round++) {
    const a = filled(size + round, round);
    const b = grown(size - round, round);
    total = (total + a[size - 1] + b[size - 41] + a.length + b.length) % 1000003;
  }
  return total;
}

console.log(run(n));
