const n = 7000000;
// Functions that refuse bad arguments with an error before they return one expression.
function checkedTriple(x) {
  if (x < 0) {
    throw new Error("negative value");
  }
  return x * 3 + 1;
}

function checkedRest(x, limit) {
  if (limit === 0) {
    throw new Error("no limit");
  }
  return x % limit;
}

function checkedStep(x) {
  if (x > 1000000) {
    throw new Error("value too large");
  }
  return x + 7;
}

function run(count) {
  let total = 0;
  for (let i = 0; i < count; i++) {
    total = checkedRest(checkedTriple(total), 10007);
    total = checkedStep(total);
  }
  return total;
}

console.log(run(n));
