const n = 30000;
// Texts of about a kilobyte built by repeated append of short pieces.
function build(pieces, count) {
  let text = "";
  for (let i = 0; i < count; i++) {
    text += pieces[i % 4];
  }
  return text;
}

function run(rounds) {
  const pieces = ["alpha ", "be ", "gamma-delta ", "x"];
  let total = 0;
  for (let i = 0; i < rounds; i++) {
    const text = build(pieces, 100 + (i % 200));
    total += text.length;
    if (text[i % 500] === "a") {
      total += 1;
    }
  }
  return total;
}

console.log(run(n));
