const n = 130;
// A text scanned by index: one-character strings fetched and compared.
function scan(text) {
  let vowels = 0;
  let words = 0;
  for (let i = 0; i < text.length; i++) {
    const c = text[i];
    if (c === " ") {
      words += 1;
    } else if (c === "e") {
      vowels += 1;
    } else if (c === "a") {
      vowels += 1;
    }
  }
  return words * 10 + vowels;
}

function run(rounds) {
  const text = "the quick brown fox jumps over a lazy dog and eats an apple ".repeat(1500);
  let total = 0;
  for (let round = 0; round < rounds; round++) {
    total += scan(text);
  }
  return total;
}

console.log(run(n));
