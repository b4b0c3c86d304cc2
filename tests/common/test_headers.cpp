// Carries the precompiled headers that all tests share (cmake/filter_test.cmake). A program, since
// headers compiled for a library do not fit one.

int main() { return 0; }
