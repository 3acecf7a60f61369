const n = 1000;
// Escape times over a grid of points: float arithmetic on locals in a tight loop.
function escape(cr, ci, limit) {
  let zr = 0.0;
  let zi = 0.0;
  for (let k = 0; k < limit; k++) {
    const zr2 = zr * zr;
    const zi2 = zi * zi;
    if (zr2 + zi2 > 4.0) {
      return k;
    }
    zi = 2.0 * zr * zi + ci;
    zr = zr2 - zi2 + cr;
  }
  return limit;
}

function run(size) {
  let total = 0;
  for (let y = 0; y < size; y++) {
    const ci = (2.0 * y) / size - 1.0;
    for (let x = 0; x < size; x++) {
      total += escape((3.0 * x) / size - 2.0, ci, 50);
    }
  }
  return total;
}

console.log(run(n));
