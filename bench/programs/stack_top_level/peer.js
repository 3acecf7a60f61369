const n = 3500000;
// A stack worked by the top level itself: a tree of numbers walked depth first.
const stack = [1];
let count = 0;
let sum = 0;
while (stack.length > 0) {
  const node = stack.pop();
  count += 1;
  sum = (sum * 3 + node) % 1000003;
  const child = node * 2;
  if (child <= n) {
    stack.push(child);
    if (child < n) {
      stack.push(child + 1);
    }
  }
}
console.log(count);
console.log(sum);
