const n = 1500000;
// A queue worked by the top level itself: tasks taken from the front of a short array, put back at its end.
const queue = [];
for (let i = 0; i < 32; i++) {
  queue.push([i, ((i * 7) % 11) + 1]);
}
let sum = 0;
for (let i = 32; i < n; i++) {
  const task = queue.shift();
  const left = task[1] - 1;
  sum = (sum * 3 + task[0] + left) % 1000003;
  if (left > 0) {
    task[1] = left;
    queue.push(task);
  } else {
    queue.push([i, (i % 9) + 1]);
  }
}
console.log(queue.length);
console.log(sum);
