;; puts(1);; puts(2) ;

;
puts(3);
if true;;; puts(4);; end;
while false; puts("never"); end;
def f();; 5;; end; puts(f());
