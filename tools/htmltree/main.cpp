#include "tools/htmltree/program.h"

int main(int argc, char** argv) { return htmltree::runProgram(argc, argv); }
