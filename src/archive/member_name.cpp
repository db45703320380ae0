#include "archive/member_name.h"

#include <algorithm>
#include <array>

#include "foundation/code_page.h"
#include "foundation/names.h"
#include "foundation/utf8.h"

namespace {

constexpr unsigned char FirstBeyondAscii = 0x80;
constexpr int FirstPackersPage = 437;
constexpr size_t LongestCharacter = 4;  // bytes

using PageTable = std::array<wchar_t, 256>;

PageTable readPage() {
  PageTable table{};
  for (size_t i = 1; i < table.size(); ++i) {
    const char byte[] = {static_cast<char>(i), 0};
    table[i] = fromCodePage(byte, FirstPackersPage).data()[0];
  }
  return table;
}

wchar_t characterOf437(char byte) {
  static const PageTable table = readPage();
  return table[static_cast<unsigned char>(byte)];
}

bool isAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char c) { return static_cast<unsigned char>(c) < FirstBeyondAscii; });
}

bool canBeShown(std::wstring_view component) {
  return !component.empty() && component != L"." && component != L"..";
}

}  // namespace

bool MemberName::decode(std::string_view bytes, NameForm form) {
  text_.clear();
  if (bytes.size() > size_t{MaxPathLength} * LongestCharacter) return false;
  if (isAscii(bytes)) {
    text_.assign(bytes.begin(), bytes.end());
  } else if (form == NameForm::Page437) {
    exact_ = false;
    for (char byte : bytes) text_ += characterOf437(byte);
  } else {
    while (!bytes.empty()) {
      wchar_t character = 0;
      bytes.remove_prefix(decodeExactCharacter(bytes, character));
      text_ += character;
    }
  }
  for (wchar_t& character : text_) {
    if (character != L'\\') continue;
    character = L'/';
    exact_ = false;
  }
  return text_.size() <= size_t{MaxPathLength};
}

bool MemberName::check(std::wstring_view path) {
  for (size_t start = 0, end = 0; end < path.size(); start = end + 1) {
    end = std::min(path.find(L'/', start), path.size());
    const std::wstring_view component = path.substr(start, end - start);
    if (!canBeShown(component) || component.find(L'\0') != std::wstring_view::npos) {
      directory_ = path.substr(0, start > 0 ? start - 1 : 0);
      return false;
    }
  }
  return true;
}

bool MemberName::take(const ArchiveMember& member) {
  directory_ = name_ = {};
  dotSlash_ = false;
  exact_ = member.shown.empty() || member.shown == member.name;
  if (!decode(exact_ ? member.name : member.shown, member.form)) return false;
  std::wstring_view path = text_;
  bool directory = member.kind == MemberKind::Directory;
  if (path.starts_with(L"/")) exact_ = false;
  path.remove_prefix(std::min(path.find_first_not_of(L'/'), path.size()));
  if (path.ends_with(L"/")) {
    directory = true;
    path.remove_suffix(1);
  }
  if (path.starts_with(L"./")) {
    dotSlash_ = true;
    path.remove_prefix(2);
  } else if (path == L"." && directory) {
    dotSlash_ = true;
    path = {};
  }
  if (!check(path)) return false;
  if (path.empty()) return directory;
  const size_t slash = path.rfind(L'/');
  if (directory) {
    directory_ = path;
  } else if (slash == std::wstring_view::npos) {
    name_ = path;
  } else {
    directory_ = path.substr(0, slash);
    name_ = path.substr(slash + 1);
  }
  return true;
}
