#pragma once

#include <sys/stat.h>

#include <string>
#include <vector>

#include "archive_actions/archive_tool.h"
#include "foundation/system.h"

// What a tool wrote below a directory, `top`: looked at through no link, so never anywhere else.
// Paths are bytes. Application thread.
struct FoundPlace {
  Descriptor parent;  // the directory that holds it
  std::string name;   // in there
  std::string path;   // below `top`
  struct stat info {};
};

enum class NameMatch {
  Exact,
  // Where the exact name isn't: the one name with as many bytes and the same ASCII characters.
  // Tools write names of other systems in characters of their own. Two such names are none.
  Likely,
};

// 0 or errno: ENOENT when there is nothing of that name, ELOOP or ENOTDIR behind a link.
int findWritten(int top, const std::string& path, NameMatch match, FoundPlace& place);

// The same for a member that is listed under the path `shown` and that the tool knows as
// `operands`: under these names, or what the tool may have made of them. EEXIST where they are
// several places.
int findMember(int top, const Westring& shown, const std::vector<ToolOperand>& operands,
               FoundPlace& place);

// The one file that there is, in whatever directories. ENOENT for none or several.
int findOnlyFile(int top, FoundPlace& place);

// Whether that is where a path below `top` leads.
bool isAt(const FoundPlace& place, const std::string& path);

// 0 for a regular file with no other name, EINVAL for anything else.
int checkRegular(const FoundPlace& place);

// Gives what was found another path below `top`; directories on the way are made. Nothing is
// replaced: EEXIST.
int moveWritten(int top, const FoundPlace& found, const std::string& path);

// A stored name as it is listed: backslashes are slashes there.
std::string withSlashes(std::string path);

// Backslashes in stored names are listed as slashes, and most tools of this system write them as
// they are: such files go where they are listed. EEXIST where something stands already.
int turnBackslashes(int top, const std::vector<ToolOperand>& operands);
