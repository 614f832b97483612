# A newer compiler than the one of the developers' presets.
set(CMAKE_CXX_COMPILER clang++-19)
