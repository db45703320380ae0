#pragma once

#include <optional>
#include <string>

#include "editor/text/file_content.h"
#include "foundation/place.h"
#include "foundation/westring.h"

// A file that an edit has made, which wasn't there before. If nothing came into it by the end of
// the scope it is removed again, unless the path names another file by then.
class CreatedFile {
 public:
  CreatedFile() = default;
  ~CreatedFile() { removeIfEmpty(); }
  CreatedFile(const CreatedFile&) = delete;
  CreatedFile& operator=(const CreatedFile&) = delete;

  // Makes it, empty, and tells what was made as if it had been read. Where the path is a link that
  // leads nowhere, what that names is made. 0 or errno: EEXIST for a name that was taken.
  int create(const Westring& path, FileContent& content);
  void keep() { made_.reset(); }  // it was saved
  void removeIfEmpty();

 private:
  std::string path_;  // behind all links
  std::optional<FileId> made_;
};
