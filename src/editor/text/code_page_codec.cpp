#include "editor/text/code_page_codec.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <map>

#include "foundation/code_page.h"

namespace {

constexpr wchar_t Unknown = INT_MIN;
constexpr wchar_t Longer = INT_MIN + 1;  // begins a character of more bytes
constexpr wchar_t None = INT_MIN + 2;
constexpr int FirstNonAscii = 0x80;
constexpr size_t LongestCharacter = 8;  // with the bytes that switch the meaning of what follows
constexpr size_t MostRemembered = 65536;
constexpr char WideName[] = "wchar_t";
// The bytes that end lines in every page: no other character has them, and they are no other one.
constexpr std::string_view LineEndBytes("\r\n\0", 3);

wchar_t rawByte(char byte) {
  return static_cast<unsigned char>(byte) - 256;
}

size_t pairIndex(char first, char second) {
  return static_cast<size_t>(static_cast<unsigned char>(first)) << 8 |
         static_cast<unsigned char>(second);
}

}  // namespace

// One open conversion, in its first state at each call.
class CodePageCodec::Converter {
 public:
  Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Converter() {
    if (valid()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool valid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // 0 and how many bytes came out, or errno.
  int run(const void* in, size_t inBytes, void* out, size_t room, size_t& got) {
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    auto* source = const_cast<char*>(static_cast<const char*>(in));
    auto* target = static_cast<char*>(out);
    size_t left = room;
    const size_t result = iconv(handle_, &source, &inBytes, &target, &left);
    int error = result == static_cast<size_t>(-1) ? errno : 0;
    // What it found no character for must not be replaced by another one.
    if (error == 0 && result != 0) error = EILSEQ;
    if (error == 0) iconv(handle_, nullptr, nullptr, &target, &left);
    got = room - left;
    return error;
  }

 private:
  iconv_t handle_;
};

CodePageCodec& CodePageCodec::of(int page) {
  static std::map<int, std::unique_ptr<CodePageCodec>> codecs;
  std::unique_ptr<CodePageCodec>& codec = codecs[page];
  if (!codec) codec.reset(new CodePageCodec(page));
  return *codec;
}

CodePageCodec::CodePageCodec(int page) {
  const std::string name = "CP" + std::to_string(page);
  toWide_ = std::make_unique<Converter>(WideName, name.c_str());
  toBytes_ = std::make_unique<Converter>(name.c_str(), WideName);
  exists_ = toWide_->valid() && toBytes_->valid();
  readSingleBytes();
}

CodePageCodec::~CodePageCodec() = default;

void CodePageCodec::readSingleBytes() {
  for (int value = 0; value < static_cast<int>(single_.size()); ++value) {
    const char byte = static_cast<char>(value);
    wchar_t character = value < FirstNonAscii ? value : rawByte(byte);
    if (exists_) character = decodeWhole(std::string_view(&byte, 1));
    if (character == Longer) isSingleByte_ = false;
    if (value < FirstNonAscii && character != value) hasAscii_ = false;
    single_[static_cast<size_t>(value)] = character == None ? rawByte(byte) : character;
  }
  if (!isSingleByte_) pairs_.assign(size_t{1} << 16, Unknown);
}

// The one character that all of `bytes` are: Longer when they are its beginning, None when they are
// none, or not the bytes that it is written with.
wchar_t CodePageCodec::decodeWhole(std::string_view bytes) {
  if (bytes.size() == 1 && LineEndBytes.find(bytes[0]) != std::string_view::npos) return bytes[0];
  wchar_t characters[2 * LongestCharacter];
  size_t got = 0;
  const int error = toWide_->run(bytes.data(), bytes.size(), characters, sizeof characters, got);
  if (error == EINVAL || (error == 0 && got == 0)) return Longer;
  if (error != 0 || got != sizeof(wchar_t)) return None;
  return bytesOf(characters[0]) == bytes ? characters[0] : None;
}

size_t CodePageCodec::decode(std::string_view bytes, wchar_t& character) {
  character = single_[static_cast<unsigned char>(bytes[0])];
  if (character != Longer) return 1;
  if (bytes.size() >= 2) {
    wchar_t& pair = pairs_[pairIndex(bytes[0], bytes[1])];
    if (pair == Unknown) pair = decodeWhole(bytes.substr(0, 2));
    character = pair;
    if (character != Longer && character != None) return 2;
  }
  for (size_t length = 3; character == Longer && length <= LongestCharacter; ++length) {
    if (length > bytes.size()) break;
    character = decodeWhole(bytes.substr(0, length));
    if (character != Longer && character != None) return length;
  }
  character = rawByte(bytes[0]);
  return 1;
}

const std::string& CodePageCodec::bytesOf(wchar_t character) {
  const auto found = encoded_.find(character);
  if (found != encoded_.end()) return found->second;
  if (encoded_.size() >= MostRemembered) encoded_.clear();
  std::string& bytes = encoded_[character];
  if (character == L'\r' || character == L'\n' || character == L'\0')
    return bytes.assign(1, static_cast<char>(character));
  char room[4 * LongestCharacter];
  size_t got = 0;
  const int error = toBytes_->run(&character, sizeof character, room, sizeof room, got);
  if (error == 0) bytes.assign(room, got);
  if (bytes.find_first_of(LineEndBytes) != std::string::npos) bytes.clear();
  return bytes;
}

bool CodePageCodec::encode(wchar_t character, std::string& out) {
  if (!exists_) {
    if (character < 0 || character >= FirstNonAscii) return false;
    out += static_cast<char>(character);
    return true;
  }
  const std::string& bytes = bytesOf(character);
  out += bytes;
  return !bytes.empty();
}
