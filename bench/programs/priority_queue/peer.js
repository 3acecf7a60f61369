const n = 500000;
// A binary heap of pairs [priority, item] in an array: the first taken out, a later one put in.
function siftUp(heap, at) {
  const entry = heap[at];
  while (at > 0) {
    const parent = Math.floor((at - 1) / 2);
    const above = heap[parent];
    if (above[0] <= entry[0]) {
      heap[at] = entry;
      return;
    }
    heap[at] = above;
    at = parent;
  }
  heap[0] = entry;
}

function siftDown(heap, entry) {
  const size = heap.length;
  let at = 0;
  let child = 1;
  while (child < size) {
    if (child + 1 < size && heap[child + 1][0] < heap[child][0]) {
      child += 1;
    }
    const below = heap[child];
    if (below[0] >= entry[0]) {
      heap[at] = entry;
      return;
    }
    heap[at] = below;
    at = child;
    child = 2 * at + 1;
  }
  heap[at] = entry;
}

function push(heap, priority, item) {
  heap.push([priority, item]);
  siftUp(heap, heap.length - 1);
}

function pop(heap) {
  const first = heap[0];
  const last = heap.pop();
  if (heap.length > 0) {
    siftDown(heap, last);
  }
  return first;
}

function run(events) {
  const heap = [];
  let seed = 43;
  for (let i = 0; i < 2000; i++) {
    seed = (seed * 16807) % 2147483647;
    push(heap, seed % 100000, i);
  }
  let sum = 0;
  for (let i = 2000; i < events; i++) {
    const event = pop(heap);
    sum = (sum * 31 + event[0] + event[1]) % 1000003;
    seed = (seed * 16807) % 2147483647;
    push(heap, event[0] + (seed % 100000), i);
  }
  while (heap.length > 0) {
    sum = (sum * 31 + pop(heap)[1]) % 1000003;
  }
  return sum;
}

console.log(run(n));
