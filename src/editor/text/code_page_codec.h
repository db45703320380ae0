#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// One numbered code page of the system, each character by itself: what was decoded is encoded to
// the same bytes again. Bytes without a character, and those of a second spelling of one, which
// could not be told apart again, are raw bytes. Application thread.
class CodePageCodec {
 public:
  // Kept for the whole run. A page that the system lacks has ASCII only.
  static CodePageCodec& of(int page);

  ~CodePageCodec();
  CodePageCodec(const CodePageCodec&) = delete;
  CodePageCodec& operator=(const CodePageCodec&) = delete;

  bool exists() const { return exists_; }
  bool hasAscii() const { return hasAscii_; }  // bytes below 0x80 are what they are everywhere
  // Where there is one character a byte: the table of all.
  const std::array<wchar_t, 256>* table() const { return isSingleByte_ ? &single_ : nullptr; }

  // The character that `bytes`, one at least, begin with; how many bytes it took.
  size_t decode(std::string_view bytes, wchar_t& character);
  // Appends its bytes; false when the page doesn't hold it.
  bool encode(wchar_t character, std::string& out);

 private:
  class Converter;

  explicit CodePageCodec(int page);
  void readSingleBytes();
  wchar_t decodeWhole(std::string_view bytes);
  const std::string& bytesOf(wchar_t character);

  std::unique_ptr<Converter> toWide_;
  std::unique_ptr<Converter> toBytes_;
  bool exists_ = false;
  bool hasAscii_ = true;
  bool isSingleByte_ = true;
  std::array<wchar_t, 256> single_;                   // or Longer
  std::vector<wchar_t> pairs_;                        // by both bytes; Longer, or Unknown as yet
  std::unordered_map<wchar_t, std::string> encoded_;  // "" for what the page doesn't hold
};
