#include "panels/model/panel.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "console/console.h"
#include "foundation/names.h"
#include "foundation/path_info.h"

const Westring& CLinkTargetCache::targetOf(const Westring& fullPath) {
  Westring key = fullPath;
  if (const TLinkTargetCacheEntry* known = find(&key)) return known->target;
  auto made = std::make_unique<TLinkTargetCacheEntry>();
  made->path = fullPath;
  made->target = readLinkTarget(fullPath);
  const Westring& target = made->target;
  insert(made.release());
  return target;
}

int CLinkTargetCache::compareKeys(Westring* a, Westring* b) {
  return wcscmp(a->data(), b->data());
}

EntryList::EntryList() : items_(std::make_unique<entry*[]>(StartCapacity)) {}

void EntryList::swap(EntryList& other) {
  std::swap(items_, other.items_);
  std::swap(count_, other.count_);
  std::swap(capacity_, other.capacity_);
}

void EntryList::add(EntryPtr item) {
  if (count_ == capacity_) grow();
  items_[count_++] = item.release();
}

void EntryList::insertFirst(EntryPtr item) {
  if (count_ == capacity_) grow();
  std::copy_backward(begin(), end(), end() + 1);
  items_[0] = item.release();
  ++count_;
}

EntryPtr EntryList::take(int index) {
  return EntryPtr(std::exchange(items_[index], nullptr));
}

void EntryList::clear() {
  for (entry* item : *this) freeEntry(item);
  count_ = 0;
}

void EntryList::grow() {
  auto larger = std::make_unique<entry*[]>(2 * static_cast<size_t>(capacity_));
  std::copy(begin(), end(), larger.get());
  items_ = std::move(larger);
  capacity_ *= 2;
}

int pageColumns(PanelStyle style) {
  if (style == PanelStyle::Brief) return 3;
  return style == PanelStyle::BriefWide ? 2 : 1;
}

bool isDrawable(const Panel& panel) {
  return console && panel.window && !panel.window->hidden();
}

const Westring& shownPath(const Panel& panel) {
  return panel.path;
}

Westring physicalDirectory(const Panel& panel) {
  return panel.archive ? parentOf(outermostArchive(*panel.archive).path()) : panel.path;
}

void clearListing(Panel& panel) {
  panel.entries.clear();
  panel.treeLines.clear();
  panel.taggedCount = 0;
  panel.taggedSize = 0;
  panel.subdirectories->clear();
  panel.linkTargets.clear();
}
