# Output without a line break is followed at once by the prompt.
