const n = 24000000;
// The length of an array and of a string asked for again and again.
function run(count) {
  const list = [1, 2, 3, 4, 5];
  const text = "a text of thirty characters...";
  let total = 0;
  for (let i = 0; i < count; i++) {
    total = total + list.length + text.length;
    if (total > 100000) {
      total -= 100000;
    }
  }
  return total;
}

console.log(run(n));
