const n = 350000;
// The built-in sort on arrays of integers and of strings.
function run(count) {
  const numbers = [];
  const words = [];
  let seed = 17;
  for (let i = 0; i < count; i++) {
    seed = (seed * 16807) % 2147483647;
    numbers.push(seed);
    words.push("k" + (seed % 100000));
  }
  numbers.sort((a, b) => a - b);
  words.sort();
  let sum = 0;
  for (let i = 0; i < count; i++) {
    sum = (sum * 3 + numbers[i] + words[i].length) % 1000003;
  }
  console.log(sum);
  console.log(words[0]);
  console.log(words[count - 1]);
}

run(n);
