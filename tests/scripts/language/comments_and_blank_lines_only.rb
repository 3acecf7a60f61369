# A script may hold nothing but comments,

   # blank lines, indented comments
;;;
	;  # and separators.
