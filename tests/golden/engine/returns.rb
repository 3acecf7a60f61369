def constant return 1 end
def text return "text" end
def nothing return end
def global return outer end
def local(a) return a end
def computed(a) return a + 1 end
def falls_off(a)
  if a then return 1 end
end
outer = 5
return outer
