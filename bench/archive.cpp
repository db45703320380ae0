// Opening an archive, one a run:
//   panel FILE  milliseconds from Enter on it to the sorted list of the panel
//   names FILE  the same records by their paths, for comparing with other tools

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "archive/archive_entry_store.h"
#include "archive_actions/open_archive.h"
#include "foundation/utf8.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_pair.h"
#include "panels/reader/directory_reader.h"

namespace {

int panel(const Westring& file) {
  archiveOpener() = openArchiveShown;
  Panel& shown = panelPair().side[0];
  shown.showing = true;
  const auto start = std::chrono::steady_clock::now();
  if (!changeDirectory(shown, file) || readListing(shown) != 0) return 1;
  const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;
  printf("%.2f\n", passed.count());
  return 0;
}

int names(const Westring& file) {
  ArchiveWatcher nobody;
  const ArchiveOpening opening = openArchiveFile(file, file, nobody);
  for (const ArchiveMessage& message : opening.messages) {
    fprintf(stderr, "%s\n", toUtf8(message.text()).data());
  }
  if (!opening.archive) return 1;
  const ArchiveRecords& records = opening.archive->records();
  for (uint32_t i = 0; i < records.count(); ++i) {
    const ArchiveRecord& record = records.at(i);
    std::wstring path(records.directories()[record.directory].path);
    if (!path.empty() || record.name.empty()) path += L'/';
    path += record.name;
    printf("%s\n", toUtf8(path.c_str()).data());
  }
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const Westring file = decodeFileName(arguments[2]);
  if (!strcmp(arguments[1], "panel")) return panel(file);
  if (!strcmp(arguments[1], "names")) return names(file);
  return 2;
}
