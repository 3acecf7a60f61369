const n = 400;
// The game of life on a board with a margin of dead cells: cells reached by two indices, `and` and `or`.
function makeBoard(size) {
  const board = [];
  for (let y = 0; y < size + 2; y++) {
    board.push(new Array(size + 2).fill(0));
  }
  return board;
}

function scatter(board, size) {
  let seed = 5;
  for (let y = 1; y <= size; y++) {
    const row = board[y];
    for (let x = 1; x <= size; x++) {
      seed = (seed * 16807) % 2147483647;
      if (seed % 3 === 0) {
        row[x] = 1;
      }
    }
  }
}

function neighbours(board, x, y) {
  let count = 0;
  for (let dy = -1; dy <= 1; dy++) {
    for (let dx = -1; dx <= 1; dx++) {
      if ((dx !== 0 || dy !== 0) && board[y + dy][x + dx] === 1) {
        count += 1;
      }
    }
  }
  return count;
}

function nextGeneration(board, size) {
  const fresh = makeBoard(size);
  for (let y = 1; y <= size; y++) {
    const row = fresh[y];
    for (let x = 1; x <= size; x++) {
      const count = neighbours(board, x, y);
      if (count === 3 || (count === 2 && board[y][x] === 1)) {
        row[x] = 1;
      }
    }
  }
  return fresh;
}

function run(generations) {
  const size = 64;
  let board = makeBoard(size);
  scatter(board, size);
  for (let i = 0; i < generations; i++) {
    board = nextGeneration(board, size);
  }
  let sum = 0;
  for (let y = 1; y <= size; y++) {
    for (let x = 1; x <= size; x++) {
      sum = (sum * 3 + board[y][x]) % 1000003;
    }
  }
  return sum;
}

console.log(run(n));
