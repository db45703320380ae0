#pragma once

#include "foundation/westring.h"

// The configuration variables, one global of one fixed type each; the name of a variable is its key
// in the configuration file. They belong to the application thread and live for the whole run.
namespace GlobalOptions {

extern bool AutoIndent;
extern bool AutoSave;
extern Westring Background;
extern bool BriefWordRight;
extern Westring CaseFilter;
extern Estring CaseMod;
extern bool CaseModRecurse;
extern bool CaseModDirs;
extern bool CaseModFiles;
extern bool Clock;    // show the clock
extern char CmdChar;  // macro lead character
extern bool CMPContents;
extern Westring CMPMask;
extern int CMPSize;
extern int CMPTime;
extern bool CMPUnmatched;
extern int CodePage;       // 0 means 850
extern int Confirmations;  // ConfirmationOff bits
extern bool CtrlRDriveChng;
extern bool DisableInvert;
extern Westring Editor;
extern Westring Editor2;
extern bool EscPanelSwitch;
extern bool ExpandedTrees;
extern bool FFRootSearch;
extern bool FFRecurse;
extern bool FFCase;
extern bool FFWholeWord;
extern bool FFMultiDrive;
extern Estring FFDriveList;
extern Estring FontFamily;
extern int FontSize;  // points
extern bool FullScreen;
extern bool Hidden;  // list hidden files
extern int IndentWidth;
extern bool KeepExtVisible;
extern Westring Left;
extern Westring Right;
extern Westring LeftFilter;
extern Westring RightFilter;
extern int LeftSort;  // SortCode of panels
extern int RightSort;
extern int LeftStyle;  // PanelStyle
extern int RightStyle;
extern bool LeftShowing;
extern bool RightShowing;
extern int LeftType;  // PanelType
extern int RightType;
extern int Lines;    // wanted lines, 0 for the default
extern int Columns;  // wanted columns, 0 for the default
extern int MaxHist;
extern int MouSpeed;
extern bool NumLock;
extern bool OverStrike;
extern Westring PathAppend;
extern bool PathPrompt;
extern bool PMClip;
extern bool RetainCount;
extern int Saver;
extern int ScrollDelay;  // milliseconds
extern bool Shadows;
extern bool SizeCountPause;
extern char StartupSide;  // 'L' or 'R'
extern bool StickyAlt;
extern int TabWidth;
extern bool TagDirs;
extern int TimeMode;  // 12 or 24
extern bool ThousandSep;
extern Estring TranslateCP;
extern Westring TreeDir;
extern Westring Viewer;
extern Westring Viewer2;
extern bool ViewerWrap;
extern bool WaitDOS;

inline constexpr int ShortcutCount = 10;
extern Westring directoryShortcuts[ShortcutCount];  // d0 to d9

void setDefaultOptions();

}  // namespace GlobalOptions

// A set bit turns a confirmation off.
namespace ConfirmationOff {
inline constexpr int Delete = 1;  // a file or an empty directory, and "Delete?" of tagged files
inline constexpr int DeleteTagged = 2;  // the second question for tagged files
inline constexpr int DeleteTree = 4;    // a directory that isn't empty
inline constexpr int Quit = 8;
inline constexpr int TypedYes = 16;  // the tree question uses buttons instead of a typed word
}  // namespace ConfirmationOff
