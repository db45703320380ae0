#pragma once

enum class ConfigurationAnswer { Kept, PutBack };

// Lets the user edit options in place. Kept after OK; otherwise all of them are as they were. What
// follows from the new values is the caller's. Application thread.
ConfigurationAnswer configurationDialog();
