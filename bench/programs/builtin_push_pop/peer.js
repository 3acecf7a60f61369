const n = 110000;
// An array used as a stack: bursts of pushes and pops.
function run(rounds) {
  const stack = [];
  let total = 0;
  for (let round = 0; round < rounds; round++) {
    for (let i = 0; i < 50; i++) {
      stack.push(round + i);
    }
    for (let i = 0; i < 49; i++) {
      total += stack.pop() % 7;
    }
  }
  console.log(stack.length);
  console.log(total);
}

run(n);
