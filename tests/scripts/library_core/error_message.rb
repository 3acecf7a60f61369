# error stops the script; its argument is the message, in its text form and without a location.
error("disk full")
