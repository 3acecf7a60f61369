const n = 150;
// A map of the cells around an origin, its keys negative and positive: four neighbours of every cell summed.
function fill(m, size) {
  for (let x = -size; x <= size; x++) {
    for (let y = -size; y <= size; y++) {
      m.set(x * 1000 + y, (x * x + y * y) % 97);
    }
  }
}

function around(m, size) {
  let sum = 0;
  for (let x = 1 - size; x < size; x++) {
    for (let y = 1 - size; y < size; y++) {
      const at = x * 1000 + y;
      sum = (sum * 3 + m.get(at - 1000) + m.get(at - 1) + m.get(at + 1) + m.get(at + 1000)) % 1000003;
    }
  }
  return sum;
}

function run(size) {
  const m = new Map();
  fill(m, size);
  let total = 0;
  for (let round = 0; round < 50; round++) {
    total += around(m, size - (round % 5));
  }
  return total;
}

console.log(run(n));
