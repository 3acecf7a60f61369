const n = 6000;
// A line of fields split, joined and rewritten by the built-in string functions.
function run(rounds) {
  const fields = [];
  for (let i = 0; i < 400; i++) {
    fields.push("field" + ((i * 37) % 1000));
  }
  const line = fields.join(",");
  let total = 0;
  for (let i = 0; i < rounds; i++) {
    const parts = line.split(",");
    parts[i % 400] = "changed";
    const joined = parts.join(";");
    const replaced = joined.replaceAll("field1", "<one>");
    total += parts.length + joined.length + replaced.length;
  }
  return total;
}

console.log(run(n));
