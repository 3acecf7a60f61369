const n = 12;
// All placements of n queens: backtracking over arrays of flags.
function flags(count) {
  return new Array(count).fill(false);
}

function place(row, size, columns, rising, falling) {
  if (row === size) {
    return 1;
  }
  let count = 0;
  for (let col = 0; col < size; col++) {
    if (!columns[col]) {
      if (!rising[row + col]) {
        if (!falling[row - col + size]) {
          columns[col] = true;
          rising[row + col] = true;
          falling[row - col + size] = true;
          count += place(row + 1, size, columns, rising, falling);
          columns[col] = false;
          rising[row + col] = false;
          falling[row - col + size] = false;
        }
      }
    }
  }
  return count;
}

console.log(place(0, n, flags(n), flags(2 * n), flags(2 * n + 1)));
