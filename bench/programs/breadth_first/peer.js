const n = 1400;
// Breadth-first search through a maze on a square grid: an array as queue, an array of distances.
function maze(size) {
  const walls = [];
  let seed = 3;
  for (let i = 0; i < size * size; i++) {
    seed = (seed * 16807) % 2147483647;
    walls.push(seed % 4 === 0);
  }
  walls[0] = false;
  return walls;
}

function visit(cell, distance, walls, distances, queue) {
  if (!walls[cell]) {
    if (distances[cell] < 0) {
      distances[cell] = distance;
      queue.push(cell);
    }
  }
}

function run(size) {
  const walls = maze(size);
  const distances = new Array(size * size).fill(-1);
  distances[0] = 0;
  const queue = [0];
  let head = 0;
  let sum = 0;
  while (head < queue.length) {
    const cell = queue[head];
    head += 1;
    const distance = distances[cell] + 1;
    sum = (sum + distance) % 1000003;
    const x = cell % size;
    if (x > 0) {
      visit(cell - 1, distance, walls, distances, queue);
    }
    if (x < size - 1) {
      visit(cell + 1, distance, walls, distances, queue);
    }
    if (cell >= size) {
      visit(cell - size, distance, walls, distances, queue);
    }
    if (cell < size * (size - 1)) {
      visit(cell + size, distance, walls, distances, queue);
    }
  }
  console.log(queue.length);
  console.log(sum);
}

run(n);
