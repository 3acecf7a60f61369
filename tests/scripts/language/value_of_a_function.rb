# A function that runs off its end gives the value of its last expression statement or assignment.
def empty() end
def five() 5 end
def assigned() x = 7 end
def stored() a = [1] a[0] = 2 end
def chosen(c) 9 if c then 1 end end
def looped() i = 0 while i < 3 do i = i + 1 "turn " + i end end
def untouched() while false do 1 end end
def defined() 4 def inner_function() end end
def called() five() end
puts(empty(), five(), assigned(), stored(), chosen(true), chosen(false))
puts(looped(), untouched(), defined(), called())
