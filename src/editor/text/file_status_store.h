#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "editor/text/text_encoding.h"
#include "editor/text/text_place.h"
#include "foundation/file_stamp.h"
#include "foundation/sorted_collection.h"
#include "foundation/westring.h"

// One step that can be taken back, without the document that it was made in: that may end before a
// place when the file is opened again.
struct StoredUndoItem {
  std::string text;  // what the step took away, in the bytes that it had in the file
  TextPlace before;
  TextPlace after;
  TextPlace rangeStart;  // what the step put in
  TextPlace rangeEnd;
  int64_t group = 0;  // steps in a row with the same one go together; 0: on its own
};

// Both stacks of a closed file, oldest step first.
struct StoredUndo {
  TextEncoding encoding;  // of the texts
  std::vector<StoredUndoItem> undo;
  std::vector<StoredUndoItem> redo;

  bool empty() const { return undo.empty() && redo.empty(); }
  size_t bytes() const;  // of memory
};

// What is remembered of a file that was edited or viewed, for the rest of the run.
struct HISTREC {
  static constexpr int BookmarkCount = 10;
  static constexpr int64_t Unset = -1;

  explicit HISTREC(Westring key) : name(std::move(key)) { bookmarks.fill({0, Unset}); }

  Westring name;  // FileStatusStore::keyOfPath
  int64_t topLine = 0;
  int64_t cursorRow = 0;
  int64_t cursorColumn = 0;
  int64_t leftColumn = 0;
  StoredUndo steps;
  FileStamp stamp;  // the file, when `steps` were put here
  int64_t viewerPosition = Unset;
  std::array<TextPlace, BookmarkCount> bookmarks;  // index Unset: none
  TextFormat format = TextFormat::Undetermined;    // that of a file that was only viewed
  int page = 0;

 private:
  friend class FileStatusStore;
  uint64_t lastUse_ = 0;
};

// The records of all files, by their path. Of closed files at most MostRecords are remembered, and
// at most MostStepBytes of steps in all; the oldest go first. Application thread.
class FileStatusStore : public TSortedCollection<HISTREC, Westring> {
 public:
  static constexpr long MostRecords = 1000;
  static constexpr size_t MostStepBytes = size_t{64} << 20;

  ~FileStatusStore() override { clear(); }

  // The absolute path of a file, from the working directory if need be, as it was written. Two
  // spellings of one path are two keys.
  static Westring keyOfPath(const Westring& path);

  // All of these take the key. A record stays where it is until the next `record` or `stored`.
  HISTREC* find(const Westring& key);    // null when there is none
  HISTREC& record(const Westring& key);  // made if need be; counts as used now
  // To be called when steps were put into `record`: it counts as used now, and others go.
  void stored(HISTREC& record);

 protected:
  Westring* keyOf(HISTREC* record) override { return &record->name; }
  int compareKeys(Westring* a, Westring* b) override;

 private:
  HISTREC* oldest(bool (*counts)(const HISTREC&));
  void remove(HISTREC& record);

  uint64_t uses_ = 0;
};

FileStatusStore& fileStatusStore();
