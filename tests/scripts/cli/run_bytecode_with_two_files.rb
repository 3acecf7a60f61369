# One word too many: the usage text, before any file is looked at.
