# Built-ins fail without a location.
x = len(5)
