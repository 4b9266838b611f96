// SPDX-License-Identifier: MIT
// Empty: CMake makes a precompiled header only beside a source.
