n = 4000
# A lexer's scan: every byte of a text compared with one-byte literals, names, numbers and quoted texts skipped.
def scan(text, counts)
  size = len(text)
  i = 0
  while i < size
    c = text[i]
    if c == " " or c == "\n"
      i = i + 1
    elsif (c >= "a" and c <= "z") or c == "_"
      counts[0] = counts[0] + 1
      while (c >= "a" and c <= "z") or c == "_"
        i = i + 1
        c = text[i]
      end
    elsif c >= "0" and c <= "9"
      counts[1] = counts[1] + 1
      while c >= "0" and c <= "9"
        i = i + 1
        c = text[i]
      end
    elsif c == "'"
      counts[2] = counts[2] + 1
      i = i + 1
      while text[i] != "'"
        i = i + 1
      end
      i = i + 1
    elsif c == "#"
      while text[i] != "\n"
        i = i + 1
      end
    else
      counts[3] = counts[3] + 1
      i = i + 1
    end
  end
end

def run(rounds)
  line = "total = total + price_of(item, 120) * 3 - rest[45] # the sum so far\nname = 'a quoted text'; i = i + 1\n"
  text = string_rep(line, 20)
  counts = [0, 0, 0, 0]
  i = 0
  while i < rounds
    scan(text, counts)
    i = i + 1
  end
  i = 0
  while i < 4
    puts(counts[i])
    i = i + 1
  end
end

run(n)
