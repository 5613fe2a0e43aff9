// A library needs a source; what this one is for is the header that it precompiles.
