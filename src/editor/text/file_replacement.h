#pragma once

#include <string>
#include <string_view>

#include "editor/text/file_content.h"
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

// Is told of the private file, so that it is found again after a crash.
class PrivateFileWitness {
 public:
  virtual ~PrivateFileWitness() = default;
  virtual void onPrivateFile(const std::string& path, FileId id) = 0;  // it was made
  // All of the text is in it, and it is about to take the name of the file, or to be copied over
  // it: from here on the file may be the private one, or torn.
  virtual void onWholeText(const FileStamp& stamp) = 0;
  virtual void onDiscarded() = 0;  // it is no more, and the file untouched
};

// Gives a file a new content so that at every moment the old one or the new one is whole on the
// disk. All of it goes to a private file first, beside the file or, where that directory takes no
// new one, in the edit directory. Then that file takes the name, where it is the same in everything
// but the content; else the file itself is overwritten, and the private file goes when that is
// done. Links stay links. Errors are errno, or Status::ChangedMeanwhile. Without finish nothing
// happened.
class FileReplacement {
 public:
  // `witness` may be null. `overwriting` is told how much was copied over the file, where that has
  // to be: nothing may stop it then. What it says or throws is ignored; after a throw it isn't told
  // any more.
  FileReplacement(ReplacedFile file, PrivateFileWitness* witness, FileProgress overwriting = {})
      : target_(std::move(file)), witness_(witness), overwriting_(std::move(overwriting)) {}

  int begin();
  int write(std::string_view bytes);
  int finish();
  void discard();  // the private file, unless the text is in no other

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
  int createInEditDirectory();
  int takeName();
  int overwrite();
  int openTarget(Descriptor& fd);
  int fill(int fd, int from);
  void tellOverwriting(int64_t done);

  ReplacedFile target_;
  PrivateFileWitness* witness_;
  FileProgress overwriting_;
  WrittenPlace place_;
  SafeFile file_;
  FileUnlock unlock_;
  bool mayTakeName_ = true;
  int64_t size_ = 0;
  FileStamp stamp_;
  std::string wholeText_;
  bool clearingReadOnlyFailed_ = false;
};
