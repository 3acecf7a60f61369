def even?(n) if n == 0 then return true end return odd?(n - 1) end
def odd?(n) if n == 0 then return false end return even?(n - 1) end
puts(even?(10), odd?(7), even?(7))
