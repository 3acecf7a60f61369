const n = 8000000;
// Protected calls that succeed.
function work(x, i) {
  let y = x * 3 + i;
  if (y > 1000000) {
    y = y % 1000003;
  }
  return y;
}

function run(count) {
  let total = 1;
  for (let i = 0; i < count; i++) {
    try {
      total = work(total, i);
    } catch (e) {
      total = 0;
    }
  }
  return total;
}

console.log(run(n));
