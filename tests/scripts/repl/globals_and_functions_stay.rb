# What a line defines is there for all later lines.
