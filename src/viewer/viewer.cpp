#include "viewer/viewer.h"

#include "foundation/path_info.h"
#include "ui/alert.h"
#include "ui/help_window.h"
#include "viewer/file_viewer.h"

Key::Code viewFile(const Westring& path, int64_t position, int64_t* topLine) {
  const HelpOfCommand help(HelpTopic::Viewer);  // also in its boxes, whoever has opened it
  int error = 0;
  {
    CViewer viewer(path);
    error = viewer.openResult();
    if (error == 0) {
      const Key::Code key = viewer.view(position);
      if (topLine) *topLine = viewer.topLine();
      return key;
    }
  }
  alert(errorText(error), path, AlertButtons::Ok, AlertColour::Error);
  return Key::Esc;
}
