#include "options/options.h"

namespace GlobalOptions {

bool AutoIndent = false;
bool AutoSave = false;
Westring Background;
bool BriefWordRight = true;
Westring CaseFilter;
Estring CaseMod;
bool CaseModRecurse = false;
bool CaseModDirs = true;
bool CaseModFiles = true;
bool Clock = false;
char CmdChar = '!';
bool CMPContents = false;
Westring CMPMask;
int CMPSize = 0;
int CMPTime = 1;
bool CMPUnmatched = true;
int CodePage = 0;
int Confirmations = 0;
bool CtrlRDriveChng = false;
bool DisableInvert = false;
Westring Editor;
Westring Editor2;
bool EscPanelSwitch = false;
bool ExpandedTrees = true;
bool FFRootSearch = true;
bool FFRecurse = true;
bool FFCase = false;
bool FFWholeWord = false;
bool FFMultiDrive = false;
Estring FFDriveList;
Estring FontFamily;
int FontSize = 12;
bool FullScreen = true;
bool Hidden = false;
int IndentWidth = 1;
bool KeepExtVisible = true;
Westring Left;
Westring Right;
Westring LeftFilter;
Westring RightFilter;
int LeftSort = 0;
int RightSort = 0;
int LeftStyle = 1;
int RightStyle = 1;
bool LeftShowing = true;
bool RightShowing = true;
int LeftType = 0;
int RightType = 0;
int Lines = 0;
int Columns = 0;
int MaxHist = 500;
int MouSpeed = 8;
bool NumLock = false;
bool OverStrike = false;
Westring PathAppend;
bool PathPrompt = true;
bool PMClip = true;
bool RetainCount = false;
int Saver = 0;
int ScrollDelay = 0;
bool Shadows = true;
bool SizeCountPause = false;
char StartupSide = 'L';
bool StickyAlt = true;
int TabWidth = 8;
bool TagDirs = false;
int TimeMode = 12;
bool ThousandSep = false;
Estring TranslateCP;
Westring TreeDir;
Westring Viewer;
Westring Viewer2;
bool ViewerWrap = true;
bool WaitDOS = false;
Westring directoryShortcuts[ShortcutCount];

// NOLINTNEXTLINE(readability-function-size): a table
void setDefaultOptions() {
  AutoIndent = false;
  AutoSave = false;
  Background = L"";
  BriefWordRight = true;
  CaseFilter = L"";
  CaseMod = "ll";
  CaseModRecurse = false;
  CaseModDirs = true;
  CaseModFiles = true;
  Clock = false;
  CmdChar = '!';
  CMPContents = false;
  CMPMask = L"*";
  CMPSize = 0;
  CMPTime = 1;
  CMPUnmatched = true;
  CodePage = 0;
  Confirmations = 0;
  CtrlRDriveChng = false;
  DisableInvert = false;
  Editor = L"";
  Editor2 = L"";
  EscPanelSwitch = false;
  ExpandedTrees = true;
  FFRootSearch = true;
  FFRecurse = true;
  FFCase = false;
  FFWholeWord = false;
  FFMultiDrive = false;
  FFDriveList = "";
  FontFamily = "DejaVu Sans Mono";
  FontSize = 12;
  FullScreen = true;
  Hidden = false;
  IndentWidth = 1;
  KeepExtVisible = true;
  Left = L"";
  Right = L"";
  LeftFilter = L"*";
  RightFilter = L"*";
  LeftSort = 0;
  RightSort = 0;
  LeftStyle = 1;
  RightStyle = 1;
  LeftShowing = true;
  RightShowing = true;
  LeftType = 0;
  RightType = 0;
  Lines = 0;
  Columns = 0;
  MaxHist = 500;
  MouSpeed = 8;
  NumLock = false;
  OverStrike = false;
  PathAppend = L"";
  PathPrompt = true;
  PMClip = true;
  RetainCount = false;
  Saver = 0;
  ScrollDelay = 0;
  Shadows = true;
  SizeCountPause = false;
  StartupSide = 'L';
  StickyAlt = true;
  TabWidth = 8;
  TagDirs = false;
  TimeMode = 12;
  ThousandSep = false;
  TranslateCP = "";
  TreeDir = L"";
  Viewer = L"";
  Viewer2 = L"";
  ViewerWrap = true;
  WaitDOS = false;
  for (Westring& shortcut : directoryShortcuts) shortcut = L"";
}

namespace {
// Gives the texts their defaults before main runs.
struct Defaults {
  Defaults() { setDefaultOptions(); }
} defaults;
}  // namespace

}  // namespace GlobalOptions
