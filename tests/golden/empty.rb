# Nothing but comments and separators.
;

;; # no code
