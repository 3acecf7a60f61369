	 x	=1+ 	2
puts	(x)
if	xthenputs	('ab') end