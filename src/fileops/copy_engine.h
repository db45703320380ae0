#pragma once

#include <optional>

#include "fileops/copy_result.h"
#include "fileops/operation.h"
#include "foundation/place.h"

enum class Permission { No, Yes };
// Whether the source of a move stays for the time being.
enum class KeepSource { No, Yes };
// Where a target in the making stands: under its own name only inside a directory that itself has a
// temporary name as long as it isn't whole.
enum class Making { Beside, Directly };

struct CopyRequest {
  Place source;
  Place target;
  TransferKind kind = TransferKind::Copy;
  Permission overwrite = Permission::No;
  Permission inPlace = Permission::No;     // when the directory takes no new name
  Permission openAnyway = Permission::No;  // although somebody writes to the source
  KeepSource keepSource = KeepSource::No;
  Making making = Making::Beside;
  // What the source was when it was looked at; without it the opened file is taken if it is
  // regular.
  std::optional<struct stat> looked;
  // The existing target that may be replaced.
  std::optional<struct stat> replaced;
};

// Copies the content of one file, or through a FIFO or device, with its time and mode. For a move
// the source is removed after the target was closed without error, unless the target is a FIFO or
// device; its description stays the caller's affair. The source is opened before anything is done
// to the target. When the request was made without `looked` and the source isn't a regular file:
// SourceFailed with ESTALE.
CopyResult copyFile(RunningOperation& operation, const CopyRequest& request);

// Makes a symbolic link anew, text and all.
CopyResult copyLink(RunningOperation& operation, const CopyRequest& request);
// Makes a FIFO, socket or device anew, without reading from it.
CopyResult copyNode(RunningOperation& operation, const CopyRequest& request);

bool isSpecialFile(mode_t mode);  // FIFO, socket, character or block device
bool isDeviceNode(mode_t mode);   // character or block device

// The number of a file that went is soon given to another one, which may be of another kind.
bool isSameThing(const struct stat& before, const struct stat& now);
// The same thing with the same time.
bool isUnchanged(const struct stat& before, const struct stat& now);

// For a move: where the command moved another name of `source` already, the target becomes a
// further name of what was made of it, in place of what it may replace. 0, or errno with nothing
// changed.
int linkToMoved(RunningOperation& operation, const CopyRequest& request, const struct stat& source);

// For a move whose target is whole: takes the source away. When the user cancels here, a target
// that took nobody's place is taken back.
CopyResult removeMovedSource(RunningOperation& operation, const CopyRequest& request);
