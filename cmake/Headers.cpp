// Only its precompiled headers are wanted.
