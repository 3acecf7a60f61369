$n = 8000000
# The loop of loop_local at top level, where every name is a global variable.
$i = 0
$total = 0
while $i < $n
  if $i % 3 == 0
    $total += $i
  elsif $i % 5 == 0
    $total -= 1
  else
    $total += 2
  end
  $i += 1
end

puts $total
