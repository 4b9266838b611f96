// Empty: CMake makes a precompiled header only beside a source.
