#pragma once

#include <sys/types.h>

// The process's umask. The system tells it only by changing it, so it is asked once; the program
// never changes it. Application thread.
mode_t fileModeMask();
