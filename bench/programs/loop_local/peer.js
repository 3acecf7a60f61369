const n = 24000000;
// A while loop over locals of a function: remainder, equality, branches, sums.
function run(limit) {
  let i = 0;
  let total = 0;
  while (i < limit) {
    if (i % 3 === 0) {
      total += i;
    } else if (i % 5 === 0) {
      total -= 1;
    } else {
      total += 2;
    }
    i += 1;
  }
  return total;
}

console.log(run(n));
