const n = 2500;
// Edit distance of two texts by dynamic programming over two rows.
function letters(size, seed) {
  const alphabet = "abcd";
  let text = "";
  for (let i = 0; i < size; i++) {
    seed = (seed * 16807) % 2147483647;
    text += alphabet[seed % 4];
  }
  return text;
}

function distance(a, b) {
  const width = b.length;
  let previous = [];
  for (let j = 0; j <= width; j++) {
    previous.push(j);
  }
  for (let i = 0; i < a.length; i++) {
    const c = a[i];
    const current = [i + 1];
    let left = i + 1;
    for (let j = 0; j < width; j++) {
      let best = previous[j];
      if (c !== b[j]) {
        best += 1;
      }
      if (left + 1 < best) {
        best = left + 1;
      }
      if (previous[j + 1] + 1 < best) {
        best = previous[j + 1] + 1;
      }
      current.push(best);
      left = best;
    }
    previous = current;
  }
  return previous[width];
}

console.log(distance(letters(n, 1), letters(n, 2)));
