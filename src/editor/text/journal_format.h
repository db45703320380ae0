#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editor/text/file_status_store.h"
#include "editor/text/text_encoding.h"
#include "foundation/file_stamp.h"

// A journal as bytes: a head, then records, each with its length and a check sum, so that a file
// that a crash has cut or damaged is read up to the last whole record.

// The text that the steps of a journal change.
struct JournalBase {
  std::string path;  // of the file, absolute
  FileStamp stamp;   // as it was read or saved last
  TextEncoding encoding;
  bool hasMark = false;
};

// One change of a text. What it needs beside the places is its own business.
struct JournalStep {
  enum class Kind : uint8_t {
    Replace = 'R',   // the text from `from` to `to` by `bytes`
    LineEnds = 'L',  // all lines get the style `value`
    Recode = 'C',    // read in the code page `value`
    Mark = 'M',      // with a byte order mark if `value` isn't 0
    Encoding = 'E'   // to be saved in the encoding `value` (encodingNumber), the text as it is
  };

  Kind kind = Kind::Replace;
  TextPlace from;
  TextPlace to;
  int64_t value = 0;
  std::string bytes;

  friend bool operator==(const JournalStep&, const JournalStep&) = default;
};

// The private file of a save.
struct JournalSave {
  std::string path;
  FileId id;
  // When all of the text was in it, just before it took the name of the file or was copied over it.
  FileStamp whole;
};

// An encoding as one number, and back; nothing from a number that is none.
int64_t encodingNumber(const TextEncoding& encoding);
std::optional<TextEncoding> encodingOfNumber(int64_t number);

struct JournalContent {
  JournalBase base;
  std::vector<JournalStep> steps;
  std::optional<JournalSave> save;  // the last one, if it wasn't given up
  size_t wholeBytes = 0;            // how much of the journal could be read
};

std::string journalHead(const JournalBase& base);
// All of the record of a step but its bytes, which follow.
void appendRecordHead(const JournalStep& step, std::string& out);
void appendRecord(const JournalStep& step, std::string& out);
void appendPrivateFile(std::string_view path, FileId id, std::string& out);
void appendWholeText(const FileStamp& stamp, std::string& out);
void appendDiscarded(std::string& out);

// Nothing without a whole head.
std::optional<JournalContent> readJournal(std::string_view bytes);
