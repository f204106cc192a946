// Nothing of its own: the target that the precompiled headers of the tests belong to.
