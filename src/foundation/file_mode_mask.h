#pragma once

#include <sys/types.h>

// The process's umask, which the program never changes. Asked at the first call and kept; the
// program makes that call before its first thread, since a system that doesn't tell the mask any
// other way tells it only by changing it for a moment. From then on any thread.
mode_t fileModeMask();
