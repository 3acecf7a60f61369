const n = 9;
// Pancake flipping over all permutations: short runs of element swaps.
function fannkuch(size) {
  const start = [];
  for (let i = 0; i < size; i++) {
    start.push(i);
  }
  const work = new Array(size).fill(0);
  const count = new Array(size + 1).fill(0);
  let checksum = 0;
  let most = 0;
  let even = true;
  let r = size;
  while (true) {
    while (r > 1) {
      count[r - 1] = r;
      r -= 1;
    }
    for (let i = 0; i < size; i++) {
      work[i] = start[i];
    }
    let flips = 0;
    let first = work[0];
    while (first > 0) {
      let i = 0;
      let j = first;
      while (i < j) {
        const held = work[i];
        work[i] = work[j];
        work[j] = held;
        i += 1;
        j -= 1;
      }
      flips += 1;
      first = work[0];
    }
    if (flips > most) {
      most = flips;
    }
    if (even) {
      checksum += flips;
    } else {
      checksum -= flips;
    }
    even = !even;
    let advancing = true;
    while (advancing) {
      if (r === size) {
        return [checksum, most];
      }
      const held = start[0];
      for (let i = 0; i < r; i++) {
        start[i] = start[i + 1];
      }
      start[r] = held;
      count[r] -= 1;
      if (count[r] > 0) {
        advancing = false;
      } else {
        r += 1;
      }
    }
  }
}

const [checksum, most] = fannkuch(n);
console.log(checksum);
console.log(most);
