# A last line that ends with the input is run like any other.
