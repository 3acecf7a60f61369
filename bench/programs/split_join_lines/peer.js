const n = 300000;
// Short lines of four fields made by joining, split again, changed and joined anew.
function run(count) {
  let total = 0;
  for (let i = 0; i < count; i++) {
    const line = [i, "name" + (i % 100), "city" + (i % 7), (i * 37) % 1000].join(",");
    const fields = line.split(",");
    let amount = parseInt(fields[3], 10);
    if (amount > 500) {
      fields[1] = fields[1].toUpperCase();
      amount -= 500;
    }
    if (fields[2] === "city3") {
      fields[2] = "capital";
    }
    total = (total + amount + fields.join("; ").length) % 1000003;
  }
  return total;
}

console.log(run(n));
