const n = 1100;
// The game of life on a torus: a grid of rows, eight neighbours a cell.
function start(size) {
  const grid = [];
  let seed = 5;
  for (let y = 0; y < size; y++) {
    const row = [];
    for (let x = 0; x < size; x++) {
      seed = (seed * 16807) % 2147483647;
      if (seed % 3 === 0) {
        row.push(1);
      } else {
        row.push(0);
      }
    }
    grid.push(row);
  }
  return grid;
}

function nextGeneration(grid, size) {
  const fresh = [];
  for (let y = 0; y < size; y++) {
    const above = grid[(y + size - 1) % size];
    const here = grid[y];
    const below = grid[(y + 1) % size];
    const row = [];
    for (let x = 0; x < size; x++) {
      const l = (x + size - 1) % size;
      const r = (x + 1) % size;
      const around = above[l] + above[x] + above[r] + here[l] + here[r] + below[l] + below[x] + below[r];
      let alive = 0;
      if (around === 3) {
        alive = 1;
      } else if (around === 2) {
        alive = here[x];
      }
      row.push(alive);
    }
    fresh.push(row);
  }
  return fresh;
}

function run(generations) {
  const size = 64;
  let grid = start(size);
  for (let i = 0; i < generations; i++) {
    grid = nextGeneration(grid, size);
  }
  let sum = 0;
  for (let y = 0; y < size; y++) {
    for (let x = 0; x < size; x++) {
      sum = (sum * 3 + grid[y][x]) % 1000003;
    }
  }
  return sum;
}

console.log(run(n));
