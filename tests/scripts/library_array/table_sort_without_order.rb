# Values that have no consistent order (NaN, texts against numbers) are kept, in some order.
nan = math_sqrt(-1)
list = []
i = 0
while i < 300
  array_push(list, nan, 300 - i, to_s(i), [i], nil, i / 7)
  i = i + 1
end
table_sort(list)
total = 0
texts = 0
i = 0
while i < len(list)
  if type_of(list[i]) == "integer"
    total = total + list[i]
  end
  if type_of(list[i]) == "string"
    texts = texts + 1
  end
  i = i + 1
end
puts(len(list), total, texts)  #=> 1800 45150 300
