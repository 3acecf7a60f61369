const n = 100000;
// A map with random keys below 2 to the power 31: stores, look-ups that hit and look-ups that miss.
function run(count) {
  const m = new Map();
  let seed = 41;
  for (let i = 0; i < count; i++) {
    seed = (seed * 16807) % 2147483647;
    m.set(seed, i);
  }
  let found = 0;
  let sum = 0;
  for (let round = 0; round < 20; round++) {
    seed = 41;
    for (let i = 0; i < count * 2; i++) {
      seed = (seed * 16807) % 2147483647;
      const value = m.get(seed);
      if (value !== undefined) {
        found += 1;
        sum = (sum + value) % 1000003;
      }
    }
  }
  console.log(found);
  console.log(sum);
}

run(n);
