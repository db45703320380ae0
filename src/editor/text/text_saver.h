#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editor/text/content_hash.h"
#include "editor/text/file_content.h"
#include "editor/text/file_replacement.h"
#include "foundation/file_stamp.h"
#include "foundation/westring.h"

// The file on the disk that belongs to an edited text: whether somebody else has changed it, and
// saving to it as FileReplacement does.
class TextSaver {
 public:
  // Takes the next bytes of the text; 0 or an error, which the text must pass on.
  using Sink = std::function<int(std::string_view bytes)>;
  // Gives all of the text, the byte order mark included, to the sink. 0 or an error of its own, as
  // for a character that can't be saved; the file is untouched then.
  using Text = std::function<int(const Sink& sink)>;

  enum class Change { None, Changed, Gone };

  struct Outcome {
    int error = 0;          // 0, errno, or Status::ChangedMeanwhile: since it was looked at last
    bool isOpened = false;  // else the error came before anything was written
    bool clearingReadOnlyFailed = false;  // where the error comes from
    std::string wholeText;  // after an error that may have torn the file: where all of the text is
    std::string leftover;   // a private file that couldn't be removed
  };

  // The file as it was read or made.
  void opened(const Westring& path, const FileContent& content);
  const Westring& path() const { return path_; }
  const FileStamp& stamp() const { return known_; }  // as it was read or saved last

  // Whether the file is still the one that was read or saved. Reads it when only its times say
  // otherwise. What it is now is what the next save replaces. 0, errno, or
  // Status::NotRegularFile; ECANCELED when it was stopped.
  int look(Change& change, const FileProgress& progress = {});

  // `overwriting` is told how far it is where the file itself has to be overwritten; it can't stop
  // that.
  Outcome save(const Text& text, ReadOnlyFile readOnly = ReadOnlyFile::Refuse,
               const FileProgress& overwriting = {});
  // To another file, which still has to be what `seen` says (lookAtFile). When that is done, it is
  // the file that belongs to the text.
  Outcome saveAs(const Westring& path, const FileStamp& seen, const Text& text,
                 ReadOnlyFile readOnly = ReadOnlyFile::Refuse,
                 const FileProgress& overwriting = {});

  // Told of each save; null: nobody.
  PrivateFileWitness* witness = nullptr;

 private:
  enum class SavedName { Same, Another };

  Outcome saveTo(const ReplacedFile& file, const Text& text, SavedName name,
                 const FileProgress& overwriting);
  void settle(const ReplacedFile& file);

  Westring path_;
  FileStamp known_;
  FileStamp seen_;
  // Of the content; none while that is torn.
  std::optional<ContentHash::Value> hash_;
  bool tellsSize_ = true;
  // What attempts have left that may have torn a file; it goes when that file is saved.
  struct Kept {
    Westring file;
    std::string wholeText;
  };
  std::vector<Kept> kept_;
};

// What a path names now, for saveAs; a stamp that doesn't exist where there is nothing. 0, errno,
// or Status::NotRegularFile.
int lookAtFile(const Westring& path, FileStamp& stamp);

// Whether both names are one file: to save as the other one is to save.
inline bool isSameFile(const FileStamp& a, const FileStamp& b) {
  return a.exists && b.exists && a.id == b.id;
}
