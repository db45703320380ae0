#pragma once

#include "archive_actions/archive_tool.h"
#include "archive_actions/private_directory.h"

enum class ToolSuccess { No, Yes };

// The archive as a tool is given it. Some tools give a name without an ending one of their own, and
// would work with another file; some keep the old archive under a name that may be another file's.
// For them it stands in a private directory beside it, with the ending. Application thread.
class ToolArchive {
 public:
  ToolArchive(const ArchiveTool& tool, const Westring& archive);

  int error() const { return error_; }  // 0, or the errno why it can't get that name
  const Westring& path() const { return path_; }
  // After the tool: what it made of the file is the archive. Only after a success that may be
  // nothing, and the archive goes. 0 or errno.
  int finish(ToolSuccess success);

 private:
  const Westring archive_;
  Westring path_;
  PrivateDirectory directory_;  // exists when it has another name
  int error_ = 0;
};
