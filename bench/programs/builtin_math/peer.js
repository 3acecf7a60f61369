const n = 6000000;
// Calls of floor, square root, minimum and maximum in a loop.
function run(count) {
  let total = 0;
  for (let i = 0; i < count; i++) {
    const r = Math.sqrt(i);
    const k = Math.floor(r * 10);
    total = (total + Math.min(k, 5000) + Math.max(i % 10, 5)) % 1000003;
  }
  return total;
}

console.log(run(n));
