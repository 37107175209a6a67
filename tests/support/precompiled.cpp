// Has nothing to say: the precompiled headers of the tests belong to a target, and a target needs a source.
