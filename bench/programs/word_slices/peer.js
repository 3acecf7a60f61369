const n = 700000;
// Words cut out of a text at its blanks and counted in a map.
function makeText(words) {
  const parts = [];
  let seed = 59;
  for (let i = 0; i < words; i++) {
    seed = (seed * 16807) % 2147483647;
    parts.push("word" + (seed % 1009));
  }
  return parts.join(" ") + " ";
}

function countWords(text) {
  const counts = new Map();
  let start = 0;
  for (let i = 0; i < text.length; i++) {
    if (text[i] === " ") {
      const word = text.substring(start, i);
      counts.set(word, (counts.get(word) ?? 0) + 1);
      start = i + 1;
    }
  }
  return counts;
}

function run(words) {
  const counts = countWords(makeText(words));
  let sum = 0;
  for (let i = 0; i < 1009; i++) {
    sum = (sum * 3 + (counts.get("word" + i) ?? 0)) % 1000003;
  }
  console.log(counts.size);
  console.log(sum);
}

run(n);
