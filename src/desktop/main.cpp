#include "desktop/run_program.h"

int main(int argc, char** argv) { return velorn::run_program(argc, argv, 1); }
