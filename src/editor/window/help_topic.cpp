#include "editor/window/help_topic.h"

#include "editor/text/file_status_store.h"
#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "foundation/wild_match.h"

namespace {

// The running configuration file, or the one that is taken when none was named.
bool isConfiguration(const Westring& file) {
  const Westring path = FileStatusStore::keyOfPath(file);
  return sameName(path, dataFilePath(DataFile::Configuration)) ||
         sameName(path, homeDataDirectory() + L"td.ini");
}

}  // namespace

HelpTopic helpTopicOf(const Westring& file) {
  if (wildMatch(L"*.mnu", file.data())) return HelpTopic::UserMenuFile;
  return isConfiguration(file) ? HelpTopic::ConfigurationFile : HelpTopic::Editor;
}
