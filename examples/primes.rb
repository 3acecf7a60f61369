# Prime numbers with the sieve of Eratosthenes, and some uses of them.

# sieve[n] is true when n is prime.
def make_sieve(limit)
  sieve = array_new(limit + 1, true)
  sieve[0] = false
  sieve[1] = false
  n = 2
  while n * n <= limit
    if sieve[n]
      # Smaller primes have already struck out the smaller multiples.
      multiple = n * n
      while multiple <= limit
        sieve[multiple] = false
        multiple = multiple + n
      end
    end
    n = n + 1
  end
  return sieve
end

def primes_of(sieve)
  primes = []
  n = 0
  while n < len(sieve)
    if sieve[n]
      array_push(primes, n)
    end
    n = n + 1
  end
  return primes
end

# The prime factors of a number, smallest first.
def factorise(n, primes)
  factors = []
  i = 0
  while n > 1
    prime = primes[i]
    if n % prime == 0
      array_push(factors, prime)
      # The quotient is whole, but "/" gives a float: math_floor makes it an integer again.
      n = math_floor(n / prime)
    else
      i = i + 1
    end
  end
  return factors
end

sieve = make_sieve(10000)
primes = primes_of(sieve)

puts("primes up to 10000:", len(primes))
puts("the first ones:", array_slice(primes, 0, 15))
puts("the last one:", primes[len(primes) - 1])

numbers = [60, 97, 1001, 7919, 8192, 9999]
i = 0
while i < len(numbers)
  puts(numbers[i], "=", array_join(factorise(numbers[i], primes), " * "))
  i = i + 1
end

# Twin primes are two apart.
twins = []
i = 1
while i < len(primes)
  if primes[i] - primes[i - 1] == 2 and primes[i] < 200
    array_push(twins, primes[i - 1] + "/" + primes[i])
  end
  i = i + 1
end
puts("twins below 200:", array_join(twins, " "))

# The widest gap between neighbouring primes.
gap = 0
at = 0
i = 1
while i < len(primes)
  if primes[i] - primes[i - 1] > gap
    gap = primes[i] - primes[i - 1]
    at = primes[i - 1]
  end
  i = i + 1
end
puts("widest gap:", gap, "after", at)

# Every even number from 4 up seems to be the sum of two primes.
def two_primes(n, sieve)
  a = 2
  # There is no break; return leaves the loop early.
  while a <= n
    if sieve[a] and sieve[n - a]
      return [a, n - a]
    end
    a = a + 1
  end
  return nil
end

n = 90
while n <= 100
  pair = two_primes(n, sieve)
  puts(n, "=", pair[0], "+", pair[1])
  n = n + 2
end
