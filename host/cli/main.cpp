#include "host/cli/program.h"

int main(int argc, char** argv) { return host::cli::runProgram(argc, argv); }
