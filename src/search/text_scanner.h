#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "editor/text/byte_pattern.h"
#include "editor/text/text_encoding.h"
#include "foundation/westring.h"

// Finding a text in the content of files.

bool isAscii(std::wstring_view text);

// The text in all the ways that a file may write it: in the default code page, in UTF-8 where that
// is something else, and, for files that begin with such a mark, in UTF-16. Never changes; any
// thread.
struct SearchedText {
  SearchedText(const Westring& text, CaseRule rule, bool wholeWord);

  struct Way {
    TextEncoding encoding;
    BytePattern pattern;
  };
  std::vector<Way> plain;
  std::vector<Way> littleEndian;
  std::vector<Way> bigEndian;
  bool wholeWord;
  int64_t longest = 0;  // bytes that a hit takes at most
};

struct TextHit {
  int64_t position = 0;  // of its first byte
  int64_t length = 0;    // bytes
  TextEncoding encoding;

  int64_t end() const { return position + length; }
};

enum class ScanResult { Found, NotFound, Stopped, Failed };

// Reads one file after the other, each once from its beginning to its end. Belongs to one thread.
class TextScanner {
 public:
  using StopAsked = std::function<bool()>;

  // `stop` is asked before each block; `blockBytes` are read at once.
  TextScanner(const SearchedText& text, StopAsked stop, size_t blockBytes = BlockBytes);

  // An open regular file of that size; what it grows meanwhile doesn't count. With size 0 it is
  // read to its end, since some files don't tell.
  void start(int fd, int64_t size);
  // The first hit that begins at or behind `from`, which never goes back within a file.
  ScanResult next(int64_t from, TextHit& hit);
  int error() const { return error_; }  // errno, after Failed

  static constexpr size_t BlockBytes = 262144;

 private:
  // How far one way to write the text has been looked for.
  struct Progress {
    const SearchedText::Way* way;
    int64_t searchedTo = 0;  // keys before that are known
    std::optional<TextHit> hit;
  };

  bool choosesWays();
  ScanResult moveWindow(int64_t base);
  void search(Progress& progress, int64_t from);
  bool isHit(const Progress& progress, int64_t key, int64_t from, TextHit& hit) const;
  bool isWholeWord(const TextHit& hit) const;
  std::string_view window() const { return {buffer_.get(), length_}; }
  int64_t windowEnd() const { return base_ + static_cast<int64_t>(length_); }
  bool atEnd() const { return windowEnd() >= size_ || ended_; }
  int64_t keysEnd() const { return atEnd() ? windowEnd() : windowEnd() - margin_; }

  const SearchedText& text_;
  const StopAsked stop_;
  const size_t blockBytes_;
  const int64_t margin_;  // bytes around a key that decide about it
  int fd_ = -1;
  int64_t size_ = 0;
  int64_t base_ = 0;   // of the window in the file
  size_t length_ = 0;  // of the window
  std::unique_ptr<char[]> buffer_;
  bool ended_ = false;  // the file is shorter than its size
  std::vector<Progress> ways_;
  int error_ = 0;
};
