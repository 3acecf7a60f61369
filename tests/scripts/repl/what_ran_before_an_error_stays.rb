# A failing line keeps what it did before it failed.
