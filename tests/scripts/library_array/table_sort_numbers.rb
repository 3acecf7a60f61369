# Numbers sort by value; integers, floats and booleans mix. The array itself is sorted.
list = [3, 1, 2.5]
same = list
puts(table_sort(list), list, same)  #=> nil [1, 2.5, 3] [1, 2.5, 3]
mixed = [2, true, 0.5, false, -1]
table_sort(mixed)
puts(mixed)  #=> [-1, false, 0.5, true, 2]
numbers = [10, 9, 8, 100, -5, 0]
table_sort(numbers)
puts(numbers)  #=> [-5, 0, 8, 9, 10, 100]
extremes = [0, math_log(0), 9223372036854775807, 0 - math_log(0), -9223372036854775807]
table_sort(extremes)
puts(extremes)  #=> [-inf, -9223372036854775807, 0, 9223372036854775807, inf]
