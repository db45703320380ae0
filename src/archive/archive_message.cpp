#include "archive/archive_message.h"

#include <string>

Westring ArchiveMessage::text() const {
  switch (note) {
    case ArchiveNote::NoCentralDirectory:
      return L"Central directory not found in";
    case ArchiveNote::ZipListUnreadable:
      return L"ZIP corrupt, cannot read file list";
    case ArchiveNote::ZipNonsenseHeader:
      return L"ZIP corrupt, nonsense header read";
    case ArchiveNote::ZipBadDirectory:
      return L"ZIP corrupt, bad central directory";
    case ArchiveNote::RarHeader:
      return L"Error in RAR header";
    case ArchiveNote::Damaged:
      return L"Archive is damaged";
    case ArchiveNote::HeadersEncrypted:
      return L"Archive headers are encrypted";
    case ArchiveNote::TooManyNames:
      return L"Too many names, not all are shown";
    case ArchiveNote::NamesHidden:
      return Westring(L"Some names can't be shown: ") + Westring(std::to_wstring(count).c_str());
  }
  return {};
}
