const n = 280;
// The shortest paths between all pairs of nodes: a matrix as an array of rows, its elements reached by two indices.
function makeMatrix(size) {
  const d = [];
  let seed = 53;
  for (let i = 0; i < size; i++) {
    const row = [];
    for (let j = 0; j < size; j++) {
      seed = (seed * 16807) % 2147483647;
      if (i === j) {
        row.push(0);
      } else {
        row.push((seed % 1000) + 1);
      }
    }
    d.push(row);
  }
  return d;
}

function shorten(d, size) {
  for (let k = 0; k < size; k++) {
    for (let i = 0; i < size; i++) {
      const row = d[i];
      for (let j = 0; j < size; j++) {
        const via = d[i][k] + d[k][j];
        if (via < d[i][j]) {
          row[j] = via;
        }
      }
    }
  }
}

function run(size) {
  const d = makeMatrix(size);
  shorten(d, size);
  let sum = 0;
  for (let i = 0; i < size; i++) {
    for (let j = 0; j < size; j++) {
      sum = (sum * 3 + d[i][j]) % 1000003;
    }
  }
  return sum;
}

console.log(run(n));
