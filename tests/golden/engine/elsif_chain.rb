def size(n)
  if n < 10
    return "small"
  elsif n < 100
    text = "medium"
  elsif n == g
    text = "global"
  else
    text = "large"
  end
  return text
end
