const n = 6000000;
// Conditions made of several comparisons: points in regions, leap years, kinds of triangles.
function region(x, y) {
  if (x >= 20 && x < 60 && y >= 30 && y < 80) {
    return 1;
  }
  if (x < 5 || x > 95 || y < 5 || y > 95) {
    return 2;
  }
  if ((x === y || x + y === 100) && !(x > 40 && x < 70)) {
    return 3;
  }
  return 4;
}

function triangle(a, b, c) {
  if (a + b <= c || b + c <= a || a + c <= b) {
    return 0;
  } else if (a === b && b === c) {
    return 3;
  } else if (a === b || b === c || a === c) {
    return 2;
  }
  return 1;
}

function run(count) {
  let total = 0;
  let leap = 0;
  for (let i = 0; i < count; i++) {
    const x = i % 101;
    const y = i % 97;
    total += region(x, y) + triangle(x, y, i % 89);
    if (i % 4 === 0 && (i % 100 !== 0 || i % 400 === 0)) {
      leap += 1;
    }
  }
  console.log(total);
  console.log(leap);
}

run(n);
