#include "tools/help.h"

#include <optional>

#include "foundation/data_paths.h"
#include "foundation/regular_file.h"
#include "tools/help_file.h"
#include "tools/help_screen.h"
#include "ui/alert.h"

namespace {

constexpr wchar_t OwnName[] = L"td.tdh";

// For as long as the process; nothing when no file could be read.
std::optional<HelpFile>& loadedHelp() {
  static std::optional<HelpFile> loaded;
  return loaded;
}

bool load(const Westring& path) {
  std::string content;
  if (readRegularFile(path, content, HelpFile::LargestFile, Links::Follow) != 0) return false;
  loadedHelp().emplace(std::move(content));
  return true;
}

void showTopic(HelpTopic topic) {
  std::function<void()> index;
  if (topic != HelpTopic::Index) index = [] { showTopic(HelpTopic::Index); };
  HelpScreen(loadedHelp()->topic(static_cast<int>(topic)), index).run();
}

}  // namespace

void loadHelp() {
  loadedHelp().reset();
  if (!load(dataFilePath(DataFile::Help))) load(sharedDirectory() + OwnName);
}

void HelpOfFile::show(HelpTopic topic) {
  if (topic == HelpTopic::None) return;
  if (!loadedHelp()) {
    const HelpOfCommand noHelpOnThis(HelpTopic::None);
    alert(L"Help not loaded", Westring());
    return;
  }
  showTopic(topic);
}
