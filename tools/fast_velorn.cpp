// The program with a fast clock, so that a collection of minutes can be watched in seconds. A program of its
// own and not a setting: nobody finds a fast clock left behind.
//     velorn-fast SPEED      1 to 100 times as fast
#include "desktop/run_program.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    constexpr int fastest = 100;
    const int speed = argc > 1 ? std::atoi(argv[1]) : 0;
    if (speed < 1 || speed > fastest) {
        std::fputs("velorn-fast SPEED: from 1 to 100\n", stderr);
        return 2;
    }
    return velorn::run_program(argc, argv, speed);
}
