# A script path takes no further words.
