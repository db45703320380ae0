#include "editor/window/desktop_clipboard.h"

#include "console/console.h"
#include "editor/document/edit_clipboard.h"
#include "foundation/utf8.h"

namespace {

class ConsoleClipboard : public DesktopClipboard {
 public:
  void take(std::function<std::wstring()> text) override {
    console->offerClipboardText(
        [text = std::move(text)] { return std::string(toDisplayUtf8(text().c_str()).data()); });
  }
  bool isOurs() override { return console->isClipboardOffered(); }
  std::wstring text() override { return console->getClipboardText().data(); }
};

}  // namespace

void connectDesktopClipboard() {
  static ConsoleClipboard desktop;
  editClipboard().setDesktop(&desktop);
}
