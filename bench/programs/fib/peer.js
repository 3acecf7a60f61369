const n = 35;
// Doubly recursive Fibonacci numbers: calls, comparisons and integer sums.
function fib(k) {
  if (k < 2) {
    return k;
  }
  return fib(k - 1) + fib(k - 2);
}

console.log(fib(n));
