const n = 50000;
// Breadth-first search over a graph held as an array of arrays of neighbours, from several starts.
function makeGraph(size) {
  const graph = [];
  for (let i = 0; i < size; i++) {
    graph.push([(i + 1) % size]);
  }
  let seed = 11;
  for (let i = 0; i < size * 3; i++) {
    seed = (seed * 16807) % 2147483647;
    const from = seed % size;
    seed = (seed * 16807) % 2147483647;
    graph[from].push(seed % size);
  }
  return graph;
}

function search(graph, start) {
  const distances = new Array(graph.length).fill(-1);
  distances[start] = 0;
  const queue = [start];
  let head = 0;
  let sum = 0;
  while (head < queue.length) {
    const node = queue[head];
    head += 1;
    const distance = distances[node];
    sum += distance;
    for (const next of graph[node]) {
      if (distances[next] < 0) {
        distances[next] = distance + 1;
        queue.push(next);
      }
    }
  }
  return sum;
}

function run(size) {
  const graph = makeGraph(size);
  let total = 0;
  for (let i = 0; i < 10; i++) {
    total += search(graph, i);
  }
  return total;
}

console.log(run(n));
