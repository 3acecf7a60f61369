def test(name, result)
  puts("test", name)
  return result
end
if test("a", false) then puts("A") elsif test("b", 0) then puts("B") elsif test("c", true) then puts("C") else puts("D") end
