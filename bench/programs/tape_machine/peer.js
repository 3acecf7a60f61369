const n = 1000;
// An interpreter for a tiny language of a tape and eight commands: a chain of comparisons a step.
function findJumps(code) {
  const jumps = new Array(code.length).fill(0);
  const open = [];
  for (let i = 0; i < code.length; i++) {
    const c = code[i];
    if (c === "[") {
      open.push(i);
    } else if (c === "]") {
      const start = open.pop();
      jumps[i] = start;
      jumps[start] = i;
    }
  }
  return jumps;
}

function execute(code, first) {
  const jumps = findJumps(code);
  const size = code.length;
  const tape = new Array(64).fill(0);
  tape[0] = first;
  let at = 0;
  let sum = 0;
  let pc = 0;
  while (pc < size) {
    const c = code[pc];
    if (c === "+") {
      tape[at] = (tape[at] + 1) % 256;
    } else if (c === "-") {
      tape[at] = (tape[at] + 255) % 256;
    } else if (c === ">") {
      at += 1;
    } else if (c === "<") {
      at -= 1;
    } else if (c === "[") {
      if (tape[at] === 0) {
        pc = jumps[pc];
      }
    } else if (c === "]") {
      if (tape[at] !== 0) {
        pc = jumps[pc];
      }
    } else if (c === ".") {
      sum = (sum * 31 + tape[at]) % 1000003;
    }
    pc += 1;
  }
  return sum;
}

function run(rounds) {
  const code = "[>++++++++[>++++++++[>+++>+<<-]<-]>>.[-]>.[-]<<<<-]";
  let total = 0;
  for (let i = 0; i < rounds; i++) {
    total += execute(code, i % 9 + 1);
  }
  return total;
}

console.log(run(n));
