# The bare word always ends the loop, also when it names something.
