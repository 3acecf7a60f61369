# Caesar's cipher: shifts every letter by a fixed number of places in the alphabet.
# Shifting by 13 places (rot13) is its own inverse.

# Shifts one byte code if it is a letter.
def shift_code(code, places)
  first = 0
  if code >= 65 and code <= 90
    first = 65
  elsif code >= 97 and code <= 122
    first = 97
  else
    return code
  end
  # The result of "%" has the sign of its left side; adding 26 keeps it positive.
  return first + (code - first + places % 26 + 26) % 26
end

def encrypt(text, places)
  codes = string_byte(text, 1, -1)
  letters = []
  i = 0
  while i < len(codes)
    array_push(letters, string_char(shift_code(codes[i], places)))
    i = i + 1
  end
  return array_join(letters)
end

def decrypt(text, places)
  return encrypt(text, -places)
end

message = "Attack at dawn, not before! (Zürich, 5:30)"
puts("plain:   ", message)
puts("Caesar 3:", encrypt(message, 3))
puts("back:    ", decrypt(encrypt(message, 3), 3))
puts("rot13:   ", encrypt(message, 13))
puts("twice:   ", encrypt(encrypt(message, 13), 13))

# Breaks the cipher: tries all 26 keys and takes the text that looks most like
# English, judging by how common its letters are.
common = map_new()
order = "etaoinshrdlcumwfgypbvkjxqz"
i = 0
while i < 26
  common[order[i]] = 26 - i
  i = i + 1
end

def score(text)
  points = 0
  letters = string_split(string_lower(text), "")
  i = 0
  while i < len(letters)
    # The default 0 is for blanks, digits and punctuation.
    points = points + table_get(common, letters[i], 0)
    i = i + 1
  end
  return points
end

def crack(secret)
  best_key = 0
  best_score = -1
  key = 0
  while key < 26
    points = score(decrypt(secret, key))
    if points > best_score
      best_score = points
      best_key = key
    end
    key = key + 1
  end
  return best_key
end

secret = encrypt("The treasure is buried beneath the tree on the eastern shore", 19)
puts("secret:  ", secret)
key = crack(secret)
puts("cracked: ", decrypt(secret, key), "(key " + key + ")")
