# Sorting in a custom order: functions are values, so a comparison can be an argument.
# (The built-in table_sort always uses its own order.)

# Merge sort: sorts both halves, then merges them. Equal elements keep their order.
def merge_sort(list, before)
  if len(list) < 2
    return list
  end
  middle = math_floor(len(list) / 2)
  left = merge_sort(array_slice(list, 0, middle), before)
  right = merge_sort(array_slice(list, middle), before)
  merged = []
  i = 0
  j = 0
  while i < len(left) and j < len(right)
    if before(right[j], left[i])
      array_push(merged, right[j])
      j = j + 1
    else
      array_push(merged, left[i])
      i = i + 1
    end
  end
  # One of the two remainders is empty; "+" concatenates arrays.
  return merged + array_slice(left, i) + array_slice(right, j)
end

# The usual higher-order functions are a few lines each.
def map(list, change)
  result = []
  i = 0
  while i < len(list)
    array_push(result, change(list[i]))
    i = i + 1
  end
  return result
end

def select(list, wanted)
  result = []
  i = 0
  while i < len(list)
    if wanted(list[i])
      array_push(result, list[i])
    end
    i = i + 1
  end
  return result
end

def reduce(list, start, combine)
  value = start
  i = 0
  while i < len(list)
    value = combine(value, list[i])
    i = i + 1
  end
  return value
end

# Orders.
def ascending(a, b)
  return a < b
end

def descending(a, b)
  return a > b
end

def by_length(a, b)
  return len(a) < len(b)
end

# By the second field, and by the first if the second fields are equal.
def by_score_then_name(a, b)
  if a[1] == b[1]
    return a[0] < b[0]
  end
  return a[1] > b[1]
end

numbers = [31, 4, 15, 92, 65, 35, 89, 79]
puts("ascending: ", merge_sort(numbers, ascending))
puts("descending:", merge_sort(numbers, descending))
puts("unchanged: ", numbers)

words = ["pear", "fig", "banana", "kiwi", "apple", "date", "plum"]
puts("by length: ", merge_sort(words, by_length))

scores = [["Cleo", 7], ["Abe", 9], ["Dora", 7], ["Bea", 9], ["Eli", 3]]
puts("by score:  ", merge_sort(scores, by_score_then_name))

def square(n)
  return n * n
end

def even?(n)
  return n % 2 == 0
end

def add(a, b)
  return a + b
end

puts("squares:   ", map(range(1, 10), square))
puts("even ones: ", select(map(range(1, 10), square), even?))
puts("their sum: ", reduce(select(map(range(1, 10), square), even?), 0, add))

# Built-ins are functions like any other.
puts("upper case:", map(words, string_upper))
puts("lengths:   ", map(words, len))
puts("longest:   ", reduce(map(words, len), 0, math_max))
