def empty?(list) return len(list) == 0 end
done! = empty?([])
a! = not done!
