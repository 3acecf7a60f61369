const n = 320;
// Product of two square matrices held as arrays of rows.
function fill(size, seed) {
  const m = [];
  for (let i = 0; i < size; i++) {
    const row = [];
    for (let j = 0; j < size; j++) {
      seed = (seed * 16807) % 2147483647;
      row.push(seed % 100);
    }
    m.push(row);
  }
  return m;
}

function multiply(a, b, size) {
  const c = [];
  for (let i = 0; i < size; i++) {
    const ai = a[i];
    const ci = [];
    for (let j = 0; j < size; j++) {
      let sum = 0;
      for (let k = 0; k < size; k++) {
        sum += ai[k] * b[k][j];
      }
      ci.push(sum);
    }
    c.push(ci);
  }
  return c;
}

function run(size) {
  const c = multiply(fill(size, 7), fill(size, 11), size);
  let sum = 0;
  for (let i = 0; i < size; i++) {
    for (let j = 0; j < size; j++) {
      sum = (sum * 7 + c[i][j]) % 1000000007;
    }
  }
  return sum;
}

console.log(run(n));
