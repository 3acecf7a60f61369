const n = 1400000;
// Protected calls that fail: an error raised two calls down, its message used by the caller.
function check(x) {
  const limit = 10;
  if (x >= limit) {
    throw new Error("value out of range");
  }
  return x;
}

function work(x) {
  const y = check(x + 10);
  return y * 2;
}

function guarded(x) {
  if (x >= 0) {
    throw new Error("refused");
  }
  return x;
}

function run(count) {
  let total = 0;
  for (let i = 0; i < count; i++) {
    try {
      work(i);
    } catch (e) {
      total += e.message.length;
    }
    try {
      guarded(i);
    } catch (e) {
      total += e.message.length;
    }
  }
  return total;
}

console.log(run(n));
