# "return" ends the script; its value is not shown.
puts("before")
if true then return 5 end
puts("after")
