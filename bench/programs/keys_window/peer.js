const n = 40000;
// A map as a table of open orders: it grows and shrinks in waves, and its keys only ever rise.
function run(rounds) {
  const m = new Map();
  let first = 0;
  let last = 0;
  let sum = 0;
  for (let round = 0; round < rounds; round++) {
    const limit = last + 100 + ((round * 37) % 200);
    while (last < limit) {
      m.set(last, last % 1009);
      last += 1;
    }
    while (last - first > 50) {
      sum = (sum * 3 + m.get(first)) % 1000003;
      m.delete(first);
      first += 1;
    }
  }
  console.log(m.size);
  console.log(sum);
}

run(n);
