const n = 9000000;
// Short substrings cut from a text and compared.
function run(count) {
  const text = "the rain in spain stays mainly in the plain";
  const size = text.length;
  let hits = 0;
  let total = 0;
  for (let i = 0; i < count; i++) {
    const at = i % size;
    const part = text.substring(at, at + 3);
    if (part === "ain") {
      hits += 1;
    }
    total += part.length;
  }
  console.log(hits);
  console.log(total);
}

run(n);
