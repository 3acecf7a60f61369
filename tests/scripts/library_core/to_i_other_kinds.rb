# Nothing else can be converted; that is nil, not an error.
puts(to_i(nil), to_i([]), to_i([1]), to_i(map_new()), to_i(to_i))  #=> nil nil nil nil nil
