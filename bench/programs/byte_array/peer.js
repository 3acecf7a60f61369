const n = 10000;
// A text turned into an array of byte values, then hashed.
function hash(text) {
  const bytes = Array.from(Buffer.from(text));
  let h = 7;
  for (let i = 0; i < bytes.length; i++) {
    h = (h * 31 + bytes[i]) % 16777213;
  }
  return h;
}

function run(rounds) {
  const text = "pack my box with five dozen liquor jugs; ".repeat(90);
  let total = 0;
  for (let i = 0; i < rounds; i++) {
    total = (total + hash(text) + i) % 1000003;
  }
  return total;
}

console.log(run(n));
