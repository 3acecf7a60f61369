const n = 500;
// Largest singular value of an infinite matrix: a small float function inside two nested loops.
function element(i, j) {
  return 1.0 / (((i + j) * (i + j + 1)) / 2 + i + 1);
}

function multiply(v, size) {
  const out = [];
  for (let i = 0; i < size; i++) {
    let sum = 0.0;
    for (let j = 0; j < size; j++) {
      sum += element(i, j) * v[j];
    }
    out.push(sum);
  }
  return out;
}

function multiplyTransposed(v, size) {
  const out = [];
  for (let i = 0; i < size; i++) {
    let sum = 0.0;
    for (let j = 0; j < size; j++) {
      sum += element(j, i) * v[j];
    }
    out.push(sum);
  }
  return out;
}

function run(size) {
  let u = new Array(size).fill(1.0);
  let v = u;
  for (let round = 0; round < 10; round++) {
    v = multiplyTransposed(multiply(u, size), size);
    u = multiplyTransposed(multiply(v, size), size);
  }
  let uv = 0.0;
  let vv = 0.0;
  for (let i = 0; i < size; i++) {
    uv += u[i] * v[i];
    vv += v[i] * v[i];
  }
  return Math.floor(Math.sqrt(uv / vv) * 1000000000);
}

console.log(run(n));
