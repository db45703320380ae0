#include "archive_actions/compress_command.h"

#include <cerrno>

#include "archive_actions/archive_work.h"
#include "archive_actions/compress_dialog.h"
#include "archive_actions/destination_dialog.h"
#include "archive_actions/packing.h"
#include "filecommands/chosen_items.h"
#include "filecommands/copy_command.h"
#include "filecommands/destination.h"
#include "filecommands/entry_path.h"
#include "foundation/fold.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"

namespace {

constexpr wchar_t NameOfMany[] = L"archive";

void tellError(const char* text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

bool endsIn(const Westring& text, const wchar_t* ending) {
  const Westring end(ending);
  return text.length() >= end.length() &&
         compareNoCase(right(text, end.length()).data(), ending) == 0;
}

bool resolve(const Westring& text, const Westring& base, const Westring& proposed,
             Westring& result) {
  Destination destination;
  const DestinationContext context{base, Westring(), proposed, Westring()};
  if (resolveDestination(text, context, destination) != 0) {
    tellError("Invalid path", text);
    return false;
  }
  result = destination.path;
  return true;
}

// ---- into the other panel's archive

bool isAmong(const Panel& panel, const ChosenItems& items, const Westring& file) {
  for (const entry* item : items.entries) {
    if (sameFile(itemPath(panel, *item), file)) return true;
  }
  return false;
}

Westring askWhere(const Panel& source, const ChosenItems& items, TransferKind kind,
                  const Westring& proposed) {
  const auto count = static_cast<int>(items.entries.size());
  const Westring line = items.tagged ? destinationLine(ArchiveAction::Compress, kind, count)
                                     : destinationLine(ArchiveAction::Compress, kind, items.name);
  Westring text = proposed;
  if (!askArchiveDestination(line, text) || text.empty()) return Westring();
  Westring path;
  return resolve(text, source.path, proposed, path) ? path : Westring();
}

bool isAllowed(const Panel& source, const ChosenItems& items, TransferKind kind,
               const ArchiveEntryStore& archive, const Westring& path) {
  if (!sameName(path, archive.path())) {
    tellError("Compressing into subdirectories not supported", path);
  } else if (archive.type() == ArchiveType::Gzip) {
    tellError("Cannot add to a GZip file", path);
  } else if (kind == TransferKind::Move && isAmong(source, items, archive.diskFile())) {
    tellError("Cannot move an archive into itself", path);
  } else {
    return true;
  }
  return false;
}

// ---- a new archive

Westring proposedName(const Panel& source, const entry& current) {
  const Westring directory = addSlash(destinationDirectory(panelOpposite(source)));
  const bool up = sameName(current.name(), ParentName);
  const Westring path = directory + (up ? Westring(NameOfMany) : Westring(current.name()));
  const int dot = path.rfind(L'.');
  return dot > path.rfind(L'/') ? left(path, dot) : path;
}

// Whether what stands there by now can become this archive.
bool mayMake(const Westring& path, ArchiveType type) {
  struct stat info;
  const int error = lstatPath(path, info);
  if (error == ENOENT) return true;
  if (error != 0) {
    alert(errorText(error), path, AlertButtons::Ok, AlertColour::Error);
    return false;
  }
  ArchiveWatcher nobody;
  const ArchiveOpening there = openArchiveFile(path, path, nobody);
  if (!there.archive || there.archive->type() != type) {
    tellError("File already exists", path);
    return false;
  }
  if (type != ArchiveType::Gzip) return true;
  return alert("File already exists, Overwrite?", path, AlertButtons::OkCancel) == Answer::Yes;
}

bool fitsType(const ChosenItems& items, ArchiveType type, const Westring& name) {
  if (type != ArchiveType::Gzip) return true;
  if (items.entries.size() == 1 && !items.single().isDirectory()) return true;
  tellError("GZips cannot contain multiple files", name);
  return false;
}

}  // namespace

void compressIntoOther(Panel& source, TransferKind kind) {
  Panel& other = panelOpposite(source);
  const ChosenItems items = chosenItems(source, ParentEntry::PassedOver);
  if (items.empty() || !other.archive) return;
  const Westring path = askWhere(source, items, kind, other.path);
  if (path.empty()) return;
  if (!liesIn(path, other.archive->path())) {
    return copyCommand(source, kind == TransferKind::Move ? CopyFlag::Move : 0, &path);
  }
  auto& archive = static_cast<ArchiveEntryStore&>(*other.archive);
  if (!isAllowed(source, items, kind, archive, path)) return;
  ArchiveWork::of(archive).giveBack();
  Packing packing(source, items, archive.type(), archive.diskFile());
  if (!packing.isEmpty()) packing.run(kind);
  panelRefresh();
}

Westring nameOfNewArchive(const Westring& path, ArchiveType type) {
  struct Ending {
    ArchiveType type;
    const wchar_t* text;
  };
  constexpr Ending Endings[] = {{ArchiveType::Zip, L".zip"},   {ArchiveType::Rar, L".rar"},
                                {ArchiveType::Lharc, L".lzh"}, {ArchiveType::Arj, L".arj"},
                                {ArchiveType::Ace, L".ace"},   {ArchiveType::Ha, L".ha"},
                                {ArchiveType::Gzip, L".gz"},   {ArchiveType::Tar, L".tar"}};
  const wchar_t* ending = L"";
  for (const Ending& each : Endings) {
    if (each.type == type) ending = each.text;
  }
  if (type == ArchiveType::Gzip && endsIn(path, L".tgz")) return path;
  const bool always = type == ArchiveType::Gzip || type == ArchiveType::Tar;
  const bool complete = always ? endsIn(path, ending) : path.rfind(L'.') > path.rfind(L'/');
  return complete ? path : path + ending;
}

void compressFiles(Panel& source) {
  if (!isReadableDirectory(source)) return;
  const ChosenItems items = chosenItems(source, ParentEntry::PassedOver);
  if (items.empty()) return;
  Westring name = proposedName(source, *source.currentEntry());
  const Westring proposed = name;
  Westring path;
  ArchiveType type{};
  const auto accepts = [&](const Westring& text, ArchiveType chosen) {
    const Westring typed = trim(text);
    path = Westring();
    if (typed.empty()) return true;
    if (!fitsType(items, chosen, typed) || !resolve(typed, source.path, proposed, path))
      return false;
    path = nameOfNewArchive(path, chosen);
    return mayMake(path, chosen);
  };
  if (!askNewArchive(name, type, accepts) || path.empty()) return;
  Packing packing(source, items, type, path);
  if (!packing.isEmpty()) packing.run(TransferKind::Copy);
  panelRefresh();
}
