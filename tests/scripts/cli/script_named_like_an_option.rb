# Only the exact mode words are special.
