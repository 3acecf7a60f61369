const n = 1700000;
// Small functions that take arrays and give back numbers or new arrays: a point turned around an axis.
function dot(a, b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

function cross(a, b) {
  return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
}

function addScaled(a, b, factor) {
  a[0] += b[0] * factor;
  a[1] += b[1] * factor;
  a[2] += b[2] * factor;
}

function scaled(a, factor) {
  return [a[0] * factor, a[1] * factor, a[2] * factor];
}

function run(steps) {
  const axis = [0.48, 0.6, 0.64];
  let point = [1.0, 0.0, 0.0];
  let sum = 0.0;
  for (let i = 0; i < steps; i++) {
    addScaled(point, cross(axis, point), 0.01);
    point = scaled(point, 1.0 / Math.sqrt(dot(point, point)));
    sum += point[2];
  }
  return Math.floor(sum * 1000);
}

console.log(run(n));
