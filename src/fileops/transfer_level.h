#pragma once

#include "fileops/description_file.h"
#include "fileops/transfer.h"

struct Transfer::Level {
  DirectoryNames names;
  size_t next = 0;          // of the names
  size_t sourceLength = 0;  // of the directory's own path in source_
  size_t targetLength = 0;
  FileId targetId;
  struct stat info {};  // of the source
  Method method = Method::Copy;
  Making making = Making::Beside;  // of the members
  bool made = false;               // the target is new
  bool own = false;                // or in something that this command has made
  bool replacesFile = false;       // which goes when the directory gets its name
  std::string temporaryName;       // that the target has until then; relative as in `Place`
  bool left = false;               // something in it stayed behind or failed
  bool hasDescriptions = false;
  std::unique_ptr<DescriptionFile> sourceDescriptions;
  std::unique_ptr<DescriptionFile> targetDescriptions;
  DescriptionFile* parentSource = nullptr;  // which hold the directory's own line
  DescriptionFile* parentTarget = nullptr;
};
