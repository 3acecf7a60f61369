# Words after the mode word are ignored.
