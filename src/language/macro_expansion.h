#pragma once

#include <optional>
#include <vector>

#include "foundation/entry.h"
#include "foundation/westring.h"

enum class MacroPanel { This, Other };

// What macros see of the program: the panel that a command works for, and the other one. The caller
// of expandCommand implements it. Application thread.
class MacroContext {
 public:
  virtual ~MacroContext() = default;

  virtual Westring path(MacroPanel which) = 0;         // the directory shown
  virtual Westring currentName(MacroPanel which) = 0;  // "" when the panel is empty
  // The listing in its order. The expansion reads names and tags and clears `tagged`, setting
  // `wasTagged`; the counters of tags are not its business.
  virtual int entryCount(MacroPanel which) = 0;
  virtual entry* entryAt(MacroPanel which, int index) = 0;
  virtual bool inArchive(MacroPanel which) = 0;
  // The path of a temporary copy of an archive's member; nothing on failure.
  virtual std::optional<Westring> extract(MacroPanel which, const Westring& name) = 0;
  // A text from the user; nothing when cancelled.
  virtual std::optional<Westring> ask(const Westring& title) = 0;
  // Makes a new temporary file of these lines and gives its path; nothing on failure.
  virtual std::optional<Westring> writeList(const std::vector<Westring>& lines) = 0;
};

enum class MacroMode {
  Command = 0,  // a command that was typed or chosen from a menu
  Program = 1,  // an association or external program: without any macro it gets the file's name
  DryRun = 2    // asks what is to be asked and finds out about !t; other macros stay as they are
};

enum class [[nodiscard]] MacroResult{
    Failed = -1,  // cancelled, or a member wasn't extracted: the command must not run
    Done = 0,
    OncePerTagged = 1  // !t was used: wants one run for each tagged file
};

// Longest command line that a tagged list may make; what doesn't fit stays tagged for the next run.
// The first name is taken however long it is.
inline constexpr int MaxListedLine = 1000;

// Replaces the macros of `text`, each led by CmdChar, and then its variables. `file` is the name
// that the command is for; empty stands for the current entry of this panel. File names go in
// quoted for the place where they stand; what the user typed stays as it is. On failure `text` is
// unchanged.
MacroResult expandCommand(Westring& text, const Westring& file, MacroContext& context,
                          MacroMode mode);

// Up to the last '.' of the last component; a name that only begins with its dots keeps them.
Westring withoutExtension(const Westring& name);
