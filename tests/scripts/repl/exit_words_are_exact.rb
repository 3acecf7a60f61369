# Only the bare lower-case words end the loop; anything else is source text.
