// Holds the precompiled headers that all tests share; see cmake/filter_test.cmake.
