def sign(n)
  if n != 0 then
    if n < 0 then
      if n < -100 then return "very negative" else return "negative" end
    else
      return "positive"
    end
  else
    return "zero"
  end
end
puts(sign(-500), sign(-5), sign(5), sign(0))
