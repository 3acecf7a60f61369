const n = 9;
// Takeuchi's function: calls whose arguments are calls.
function tak(x, y, z) {
  if (y >= x) {
    return z;
  }
  return tak(tak(x - 1, y, z), tak(y - 1, z, x), tak(z - 1, x, y));
}

let total = 0;
for (let round = 1; round <= 4; round++) {
  total += tak(3 * n, 2 * n, n + (round % 2));
}
console.log(total);
