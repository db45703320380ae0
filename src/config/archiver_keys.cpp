#include "config/archiver_keys.h"

#include "foundation/fold.h"
#include "foundation/names.h"
#include "foundation/utf8.h"

const char* const archiverKeyNames[ArchiverKeyCount] = {
    "Compress",           "CompressListfileSwitch", "Extract",
    "ExtractWithoutPath", "ExtractListfileSwitch",  "Delete",
    "CompressDirSpec",    "ExtractDirSpec"};

namespace {

constexpr const char* Defaults[ArchiverCount][ArchiverKeyCount] = {
    {"zip -r", "-@ < ", "unzip --z", "unzip --z -j", "", "zip -d", "! !\\*", "!\\*"},
    {"rar a -std -r", "@", "rar x -std", "rar e -std", "@", "rar d -std -r", "!\\*", "!\\*"},
    {"lha a /s /e", "", "lha x /s", "lha x", "", "lha d /s", "!\\*", "!\\*"},
    {"arj a -r", "!", "arj x", "arj e", "!", "arj d", "!\\*.*", "!\\*.*"},
    {"unace a -r", "@", "unace x", "unace e", "@", "unace d", "!", "!"},
    {"ha ar", "", "ha x", "ha e", "", "ha d", "!\\*", "!\\*"},
    {"gzip -c %f > %a", "", "gzip -dc %a > %f", "", "", "", "", ""},
    {"tar -rf", "--files-from=", "tar -xf", "", "--files-from=", "tar --delete -f", "!", "!"}};

}  // namespace

const char* ArchiverKeys::defaultText(Archiver archiver, ArchiverKey key) {
  return Defaults[static_cast<int>(archiver)][static_cast<int>(key)];
}

void ArchiverKeys::setDefaults() {
  for (int archiver = 0; archiver < ArchiverCount; ++archiver) {
    for (int key = 0; key < ArchiverKeyCount; ++key) {
      texts_[archiver][key] = fromUtf8(Defaults[archiver][key]);
    }
  }
}

bool ArchiverKeys::set(Archiver archiver, const char* key, const char* value) {
  for (int i = 0; i < ArchiverKeyCount; ++i) {
    if (!sameWord(archiverKeyNames[i], key)) continue;
    const Westring usual = fromUtf8(defaultText(archiver, static_cast<ArchiverKey>(i)));
    const Westring text = decodeFileName(value);
    texts_[static_cast<int>(archiver)][i] = sameName(trim(usual), text) ? usual : text;
    return true;
  }
  return false;
}

const Westring& ArchiverKeys::text(Archiver archiver, ArchiverKey key) const {
  return texts_[static_cast<int>(archiver)][static_cast<int>(key)];
}

ArchiverKeys& archiverKeys() {
  static ArchiverKeys keys;
  return keys;
}
