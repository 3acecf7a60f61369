const n = 250;
// Ackermann's function: recursion some hundred calls deep with little work between the calls.
function ackermann(m, k) {
  if (m === 0) {
    return k + 1;
  }
  if (k === 0) {
    return ackermann(m - 1, 1);
  }
  return ackermann(m - 1, ackermann(m, k - 1));
}

function run(rounds) {
  let total = 0;
  for (let i = 0; i < rounds; i++) {
    total += ackermann(3, 4 + (i % 3));
  }
  return total;
}

console.log(run(n));
