const n = 11000000;
// Functions looked up by name in a map and called.
function add(x, i) {
  return x + i;
}

function scale(x, i) {
  return x * 3 + i;
}

function mix(x, i) {
  let y = x - i;
  if (y < 0) {
    y = -y;
  }
  return y;
}

function run(count) {
  const actions = new Map();
  actions.set("add", add);
  actions.set("scale", scale);
  actions.set("mix", mix);
  const order = ["add", "scale", "mix", "add"];
  let total = 0;
  for (let i = 0; i < count; i++) {
    total = actions.get(order[i % 4])(total, i) % 100003;
  }
  return total;
}

console.log(run(n));
