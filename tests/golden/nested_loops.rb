while a
  while b then c end
  d = 1
end
