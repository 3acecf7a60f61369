const n = 300000;
// Five bodies under gravity: float arithmetic on elements of arrays.
function energy(x, y, z, vx, vy, vz, mass) {
  let e = 0.0;
  for (let i = 0; i < 5; i++) {
    e += 0.5 * mass[i] * (vx[i] * vx[i] + vy[i] * vy[i] + vz[i] * vz[i]);
    for (let j = i + 1; j < 5; j++) {
      const dx = x[i] - x[j];
      const dy = y[i] - y[j];
      const dz = z[i] - z[j];
      e -= (mass[i] * mass[j]) / Math.sqrt(dx * dx + dy * dy + dz * dz);
    }
  }
  return e;
}

function advance(x, y, z, vx, vy, vz, mass, dt) {
  for (let i = 0; i < 5; i++) {
    for (let j = i + 1; j < 5; j++) {
      const dx = x[i] - x[j];
      const dy = y[i] - y[j];
      const dz = z[i] - z[j];
      const d2 = dx * dx + dy * dy + dz * dz;
      const mag = dt / (d2 * Math.sqrt(d2));
      const mi = mass[i] * mag;
      const mj = mass[j] * mag;
      vx[i] -= dx * mj;
      vy[i] -= dy * mj;
      vz[i] -= dz * mj;
      vx[j] += dx * mi;
      vy[j] += dy * mi;
      vz[j] += dz * mi;
    }
  }
  for (let i = 0; i < 5; i++) {
    x[i] += dt * vx[i];
    y[i] += dt * vy[i];
    z[i] += dt * vz[i];
  }
}

function run(steps) {
  const x = [0.0, 4.8, 8.3, 12.9, 15.4];
  const y = [0.0, -1.2, 4.1, -15.1, -25.9];
  const z = [0.0, -0.1, -0.4, -0.2, 0.2];
  const vx = [0.0, 0.6, -1.0, 1.1, 1.0];
  const vy = [0.0, 2.8, 1.8, 0.9, 0.6];
  const vz = [0.0, 0.0, 0.1, 0.0, -0.1];
  const mass = [39.5, 0.04, 0.011, 0.0017, 0.002];
  for (let step = 0; step < steps; step++) {
    advance(x, y, z, vx, vy, vz, mass, 0.01);
  }
  return Math.floor(energy(x, y, z, vx, vy, vz, mass) * 1000000000);
}

console.log(run(n));
