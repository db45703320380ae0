#include "commander/seam_log.h"

#include "panels/panel_fixture.h"

void SeamLog::connect() {
  directoryTree().connect(*this);
  archiveActions().connect(*this);
  historyWindows().connect(*this);
  helpWindow().connect(*this);
  internalPrograms().connect(*this);
}

void SeamLog::disconnect() {
  directoryTree().disconnect();
  archiveActions().disconnect();
  historyWindows().disconnect();
  helpWindow().disconnect();
  internalPrograms().disconnect();
}

Westring SeamLog::choose(Panel&, TreeWindowUse use) {
  note(use == TreeWindowUse::Command ? "tree" : "tree for a field");
  return directory;
}

Westring SeamLog::chooseDirectory() {
  note("directory history");
  return directory;
}

void SeamLog::remove(Panel& panel) {
  note("archive delete " + currentName(panel));
}

void SeamLog::transfer(Panel& panel, TransferKind kind) {
  note("archive " + std::string(kind == TransferKind::Copy ? "copy " : "move ") +
       currentName(panel));
}

Westring SeamLog::extract(Panel&, const Westring& name) {
  note("extract " + bytes(name));
  return extracted;
}

void SeamLog::compress(Panel& panel) {
  note("compress " + currentName(panel));
}

void SeamLog::show(HelpTopic topic) {
  note("help " + std::to_string(static_cast<int>(topic)));
}

void SeamLog::view(const Westring& path) {
  note("view " + bytes(path));
}

void SeamLog::viewList(Panel& panel) {
  note("view the list at " + currentName(panel));
}

void SeamLog::edit(const Westring& path) {
  note("edit " + bytes(path));
  if (editing) editing();
}
