# Seven bytes are less than a header.
