#pragma once

// Beside the calls of system.h, under the same hooks.
namespace System {

// openat2 with what may be resolved: below `directory`, through no link. EXDEV and ELOOP tell what
// was in the way; ENOSYS, or EPERM from a sandbox, where the kernel doesn't know it.
int openBeneath(int directory, const char* path, int flags);

}  // namespace System
