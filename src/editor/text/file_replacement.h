#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "foundation/file_stamp.h"
#include "foundation/file_unlock.h"
#include "foundation/safe_file.h"
#include "foundation/system.h"
#include "foundation/westring.h"
#include "foundation/written_place.h"

enum class ReadOnlyFile { Refuse, Override };

// A file that gets a new content.
struct ReplacedFile {
  Westring path;
  FileStamp seen;         // what it must still be; a file that doesn't exist is made
  FileId known;           // only this one may give its name to another file
  bool tellsSize = true;  // else it is overwritten in place, whatever its stamp
  ReadOnlyFile readOnly = ReadOnlyFile::Refuse;
};

// Gives a file a new content so that at every moment the old one or the new one is whole on the
// disk. All of it goes to a private file first, beside the file or, where that directory takes no
// new one, in the edit directory. Then that file takes the name, where it is the same in everything
// but the content; else the file itself is overwritten, and the private file goes when that is
// done. Links stay links. Errors are errno, or Status::ChangedMeanwhile. Without finish nothing
// happened.
class FileReplacement {
 public:
  explicit FileReplacement(ReplacedFile file) : target_(std::move(file)) {}

  int begin();
  int write(std::string_view bytes);
  // `beforeOverwriting` is called before the first byte of the file itself is touched, with the
  // path of the private file.
  int finish(const std::function<void(const std::string& wholeText)>& beforeOverwriting = {});

  void discard() { file_.discard(); }  // the private file

  // The file after finish. After an error of it without a stamp the file is untouched, else it may
  // be torn and `wholeText` is the path of the private file, which stays.
  const FileStamp& stamp() const { return stamp_; }
  const std::string& wholeText() const { return wholeText_; }
  bool clearingReadOnlyFailed() const { return clearingReadOnlyFailed_; }
  // A private file that couldn't be removed; asked last.
  const std::string& leftover() const { return file_.leftover(); }

 private:
  int checkTarget();
  int createPrivate();
  int takeName();
  int overwrite(const std::function<void(const std::string&)>& beforeOverwriting);
  int openTarget(Descriptor& fd);
  int fill(int fd, int from);

  ReplacedFile target_;
  WrittenPlace place_;
  SafeFile file_;
  FileUnlock unlock_;
  bool mayTakeName_ = true;
  int64_t size_ = 0;
  FileStamp stamp_;
  std::string wholeText_;
  bool clearingReadOnlyFailed_ = false;
};
