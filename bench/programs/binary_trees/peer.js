const n = 16;
// Complete binary trees built, counted and dropped: many small arrays.
function build(depth) {
  if (depth === 0) {
    return [null, null];
  }
  return [build(depth - 1), build(depth - 1)];
}

function count(node) {
  const left = node[0];
  if (left === null) {
    return 1;
  }
  return 1 + count(left) + count(node[1]);
}

function run(depth) {
  const kept = build(depth);
  let total = 0;
  for (let round = 0; round < 20; round++) {
    total += count(build(depth - (round % 4)));
  }
  return total + count(kept);
}

console.log(run(n));
