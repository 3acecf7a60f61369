def show(source)
  r = pcall(load, source)
  if len(r) == 3 then puts(r[2]) else puts("compiled") end
end
show("a[] = 3")
show("a[0] =")
show("a[0] = )")
show("a[1 = 2] = 3")
show("a[1 2] = 3")
show("a[b[0] = 1")
show("a[0; 1] = 2")
show("a[0]] = 1")
show("a[0] == 1")
