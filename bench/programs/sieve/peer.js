const n = 4000000;
// Sieve of Eratosthenes: loads and stores of array elements with a stride.
function run(limit) {
  const composite = new Array(limit + 1).fill(false);
  let count = 0;
  let sum = 0;
  for (let i = 2; i <= limit; i++) {
    if (!composite[i]) {
      count += 1;
      sum += i;
      for (let j = i * i; j <= limit; j += i) {
        composite[j] = true;
      }
    }
  }
  console.log(count);
  console.log(sum);
}

run(n);
