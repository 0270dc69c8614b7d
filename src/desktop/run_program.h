// The program on this machine: its outside world, its windows, its event loop.
#pragma once

namespace velorn {

// Runs it to its end; gives the process's result. Its clock and all its timers go `speed` times as fast, 1
// for everyday use.
int run_program(int argc, char** argv, int speed);

} // namespace velorn
