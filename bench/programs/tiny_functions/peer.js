const n = 6000000;
// Functions whose body is one expression, called in a loop.
function square(x) {
  return x * x;
}

function twicePlus(x, y) {
  return x * 2 + y;
}

function wrap(x) {
  return x % 10007;
}

function larger(x, y) {
  return x > y;
}

function run(count) {
  let total = 0;
  for (let i = 0; i < count; i++) {
    total = wrap(twicePlus(total, square(i % 100)));
    if (larger(total, 5000)) {
      total += 1;
    }
  }
  return total;
}

console.log(run(n));
