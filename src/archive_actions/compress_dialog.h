#pragma once

#include <functional>

#include "archive/archive_formats.h"
#include "foundation/westring.h"

// Asks for the name of a new archive, starting with `name`, and for its type, which starts with the
// one chosen last. The dialog stays while `accepts` refuses both. False on Esc. Application thread.
bool askNewArchive(Westring& name, ArchiveType& type,
                   const std::function<bool(const Westring& name, ArchiveType type)>& accepts);
