const n = 1500000;
// Word frequencies: a text split into words, a map from word to count, keys in sorted order.
function makeText(words) {
  const parts = [];
  let seed = 99;
  for (let i = 0; i < words; i++) {
    seed = (seed * 16807) % 2147483647;
    parts.push("w" + (seed % 997));
  }
  return parts.join(" ");
}

function run(words) {
  const list = makeText(words).split(" ");
  const counts = new Map();
  for (let i = 0; i < words; i++) {
    const word = list[i];
    const seen = counts.get(word);
    if (seen === undefined) {
      counts.set(word, 1);
    } else {
      counts.set(word, seen + 1);
    }
  }
  const names = [...counts.keys()].sort();
  let sum = 0;
  for (const name of names) {
    sum = (sum * 31 + counts.get(name) * name.length) % 1000003;
  }
  console.log(names.length);
  console.log(sum);
}

run(n);
