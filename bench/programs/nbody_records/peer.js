const n = 150000;
// Five bodies under gravity, each a map with fixed names: float arithmetic on entries of maps.
function makeBody(x, y, z, vx, vy, vz, mass) {
  return { x, y, z, vx, vy, vz, mass };
}

function attract(a, b, dt) {
  const dx = a.x - b.x;
  const dy = a.y - b.y;
  const dz = a.z - b.z;
  const d2 = dx * dx + dy * dy + dz * dz;
  const mag = dt / (d2 * Math.sqrt(d2));
  const ma = a.mass * mag;
  const mb = b.mass * mag;
  a.vx -= dx * mb;
  a.vy -= dy * mb;
  a.vz -= dz * mb;
  b.vx += dx * ma;
  b.vy += dy * ma;
  b.vz += dz * ma;
}

function move(body, dt) {
  body.x += dt * body.vx;
  body.y += dt * body.vy;
  body.z += dt * body.vz;
}

function advance(bodies, dt) {
  for (let i = 0; i < bodies.length; i++) {
    for (let j = i + 1; j < bodies.length; j++) {
      attract(bodies[i], bodies[j], dt);
    }
  }
  for (const body of bodies) {
    move(body, dt);
  }
}

function kineticEnergy(bodies) {
  let sum = 0.0;
  for (const b of bodies) {
    sum += 0.5 * b.mass * (b.vx * b.vx + b.vy * b.vy + b.vz * b.vz);
  }
  return sum;
}

function run(steps) {
  const bodies = [
    makeBody(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 39.5),
    makeBody(4.8, -1.2, -0.1, 0.6, 2.8, 0.0, 0.04),
    makeBody(8.3, 4.1, -0.4, -1.0, 1.8, 0.0, 0.011),
    makeBody(12.9, -15.1, -0.2, 1.1, 0.9, 0.1, 0.0017),
    makeBody(15.4, -25.9, 0.2, 1.0, 0.6, -0.1, 0.002),
  ];
  for (let step = 0; step < steps; step++) {
    advance(bodies, 0.01);
  }
  return Math.floor(kineticEnergy(bodies) * 1000000);
}

console.log(run(n));
