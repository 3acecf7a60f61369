const n = 1000000;
// Lines made by the format function from integers, strings and floats.
function run(count) {
  const names = ["anna", "bert", "carol", "dan"];
  let total = 0;
  let last = "";
  for (let i = 0; i < count; i++) {
    last = `${names[i % 4]} has ${i % 1000} of ${count} items at ${(i % 8) * 0.5}`;
    total += last.length;
  }
  console.log(total);
  console.log(last);
}

run(n);
