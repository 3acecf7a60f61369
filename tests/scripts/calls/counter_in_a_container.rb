# State that outlives a call lives in a global container.
counter = [0]
def next() counter[0] = counter[0] + 1 return counter[0] end
puts(next(), next(), next(), counter)
