#pragma once

// The whole program: start-up, main loop, orderly exit. The result is the process's exit status.
int runProgram(int argc, char** argv);
