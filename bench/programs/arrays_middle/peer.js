const n = 300000;
// Arrays of some dozen elements, written as a literal or grown by pushing; the last hundred are kept.
function row(first) {
  return [first, first + 1, first + 2, first + 3, first + 4, first + 5, first + 6, first + 7, first + 8, first + 9];
}

function grown(size, first) {
  const a = [];
  for (let i = 0; i < size; i++) {
    a.push(first + i);
  }
  return a;
}

function run(count) {
  const kept = new Array(100).fill([0]);
  let total = 0;
  for (let i = 0; i < count; i++) {
    const slot = i % 100;
    const old = kept[slot];
    total = (total + old[0] + old[old.length - 1]) % 1000003;
    kept[slot] = grown(((i * 7) % 60) + 10, i);
    total += row(i)[i % 10];
  }
  return total;
}

console.log(run(n));
