const n = 90000;
// Records held as maps with a few fixed names, read and updated in place.
function make(i) {
  const p = {};
  p["x"] = i;
  p["y"] = i * 2;
  p["speed"] = (i % 7) + 1;
  p["name"] = "p" + i;
  return p;
}

function step(p) {
  p["x"] += p["speed"];
  p["y"] -= p["speed"];
  if (p["x"] > 500) {
    p["x"] -= 500;
  }
}

function run(rounds) {
  const points = [];
  for (let i = 0; i < 100; i++) {
    points.push(make(i));
  }
  for (let round = 0; round < rounds; round++) {
    for (let i = 0; i < 100; i++) {
      step(points[i]);
    }
  }
  let sum = 0;
  for (const p of points) {
    sum += p["x"] * 3 + p["y"] + p["name"].length;
  }
  return sum;
}

console.log(run(n));
