const n = 400000;
// An array shuffled by random swaps, then put in order by heap sort.
function shuffle(a) {
  let seed = 29;
  for (let i = a.length - 1; i > 0; i--) {
    seed = (seed * 16807) % 2147483647;
    const j = seed % (i + 1);
    const held = a[i];
    a[i] = a[j];
    a[j] = held;
  }
}

function siftDown(a, root, size) {
  let child = 2 * root + 1;
  while (child < size) {
    if (child + 1 < size && a[child] < a[child + 1]) {
      child += 1;
    }
    if (a[root] >= a[child]) {
      return;
    }
    const held = a[root];
    a[root] = a[child];
    a[child] = held;
    root = child;
    child = 2 * root + 1;
  }
}

function sort(a) {
  const size = a.length;
  for (let root = Math.floor(size / 2) - 1; root >= 0; root--) {
    siftDown(a, root, size);
  }
  for (let last = size - 1; last > 0; last--) {
    const held = a[0];
    a[0] = a[last];
    a[last] = held;
    siftDown(a, 0, last);
  }
}

function checksum(a) {
  let sum = 0;
  for (const value of a) {
    sum = (sum * 31 + value) % 1000003;
  }
  return sum;
}

const a = [...Array(n).keys()];
shuffle(a);
console.log(checksum(a));
sort(a);
console.log(checksum(a));
