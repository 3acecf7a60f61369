const n = 120000;
// Words looked for, tested and changed in case and ends by the built-in string functions.
function run(rounds) {
  const text = "all work and no play makes a dull day ".repeat(40) + "NEEDLE at the end";
  const needles = ["dull", "NEEDLE", "missing", "end"];
  let total = 0;
  for (let i = 0; i < rounds; i++) {
    const needle = needles[i % 4];
    const place = text.indexOf(needle);
    if (place >= 0) {
      total += place + 1;
    }
    if (text.includes("day NEEDLE")) {
      total += 1;
    }
    const low = text.toLowerCase();
    if (low.endsWith("needle at the end")) {
      total += 2;
    }
    total += ("   " + needle + " ").trim().length;
    total += needle.toUpperCase().length + low.split("").reverse().join("").length;
  }
  return total;
}

console.log(run(n));
