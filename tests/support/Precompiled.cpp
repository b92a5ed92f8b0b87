// The object that the precompiled headers belong to.
