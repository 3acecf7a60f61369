const n = 480000;
// A map with scattered integer keys: stores, look-ups that hit and look-ups that miss.
function run(count) {
  const m = new Map();
  for (let i = 0; i < count; i++) {
    m.set((i * 7919) % 1000003, i);
  }
  let found = 0;
  let sum = 0;
  for (let pass = 0; pass < 8; pass++) {
    for (let i = 0; i < count * 2; i++) {
      const v = m.get((i * 7919) % 1000003);
      if (v !== undefined) {
        found += 1;
        sum = (sum + v) % 1000003;
      }
    }
  }
  console.log(m.size);
  console.log(found);
  console.log(sum);
}

run(n);
