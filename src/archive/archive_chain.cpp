#include "archive/archive_chain.h"

#include <utility>

#include "foundation/names.h"
#include "foundation/path_info.h"

ArchiveOpener& archiveOpener() {
  static ArchiveOpener opener;
  return opener;
}

ArchiveAttempt openArchive(const Westring& file, OpenArchive* parent) {
  const ArchiveOpener& opener = archiveOpener();
  return opener ? opener(file, parent) : ArchiveAttempt(Refusal::Unexplained);
}

bool liesIn(const Westring& path, const Westring& directory) {
  const wchar_t* rest = path.data();
  const wchar_t* part = directory.data();
  if (sameName(part, L"/")) return *rest == L'/';
  while (*part != 0 && *part == *rest) {
    ++part;
    ++rest;
  }
  return *part == 0 && (*rest == 0 || *rest == L'/');
}

Westring innerPath(const OpenArchive& archive, const Westring& path) {
  const wchar_t* text = path.data();
  int end = path.length();
  int start = archive.path().length();
  while (start < end && text[start] == L'/') ++start;
  while (end > start && text[end - 1] == L'/') --end;
  return start < end ? mid(path, start, end - start) : Westring();
}

const OpenArchive& outermostArchive(const OpenArchive& archive) {
  const OpenArchive* outermost = &archive;
  while (outermost->parent) outermost = outermost->parent.get();
  return *outermost;
}

bool staysOpen(const OpenArchive& archive, const Westring& path) {
  return liesIn(path, archive.path()) && pathExists(outermostArchive(archive).path());
}

std::unique_ptr<OpenArchive> takeInnermost(std::unique_ptr<OpenArchive>& chain) {
  std::unique_ptr<OpenArchive> innermost = std::move(chain);
  if (innermost) chain = std::move(innermost->parent);
  return innermost;
}

void attachInnermost(std::unique_ptr<OpenArchive>& chain, std::unique_ptr<OpenArchive> archive) {
  archive->parent = std::move(chain);
  chain = std::move(archive);
}

bool reopenInnermost(std::unique_ptr<OpenArchive>& chain) {
  const Westring file = takeInnermost(chain)->path();
  std::unique_ptr<OpenArchive> again = openArchive(file, chain.get()).archive;
  if (!again) return false;
  attachInnermost(chain, std::move(again));
  return true;
}

void closeLeftArchives(std::unique_ptr<OpenArchive>& chain, const Westring& path) {
  while (chain && !staysOpen(*chain, path)) takeInnermost(chain).reset();
}
