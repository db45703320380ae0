#pragma once

// Codes of menu items that no key reaches. Left and right menu items come in pairs.
namespace MenuCode {

inline constexpr int LeftInfo = 0x100000, RightInfo = 0x100193;
inline constexpr int LeftName = 0x100001, LeftExtension = 0x100002, LeftTime = 0x100003,
                     LeftSize = 0x100004, LeftUnsorted = 0x100005, LeftReverse = 0x100006;
inline constexpr int RightName = 0x100007, RightExtension = 0x100008, RightTime = 0x100009,
                     RightSize = 0x10000A, RightUnsorted = 0x10000B, RightReverse = 0x10000C;
inline constexpr int LeftBrief = 0x10000D, RightBrief = 0x10000E;
inline constexpr int LeftFull = 0x10000F, RightFull = 0x100010;
inline constexpr int LeftFilter = 0x100012, RightFilter = 0x10019C;
inline constexpr int LeftReRead = 0x100013, RightReRead = 0x10019B;
inline constexpr int LeftWide = 0x100014, RightWide = 0x100015;
inline constexpr int LeftTree = 0x100016, RightTree = 0x100017;
inline constexpr int LeftBriefWide = 0x100018, RightBriefWide = 0x100019;
inline constexpr int LeftUnix = 0x10001A, RightUnix = 0x10001B;

inline constexpr int SelectGroup = 0x10006D, UnselectGroup = 0x10006E, InvertSelection = 0x10006F;
inline constexpr int FileDateTime = 0x100071, RestoreSelection = 0x100072;
inline constexpr int EditAssociations = 0x1000D0, EditUserMenu = 0x1000D1;
inline constexpr int Configuration = 0x10012C, Colours = 0x10012D, Hidden = 0x10012E,
                     PathPrompt = 0x10012F, FullScreen = 0x100131, Clock = 0x100132,
                     TagDirectories = 0x100133, SaveSetup = 0x100134, Confirmations = 0x100135,
                     ThousandSeparator = 0x100136, RetainCount = 0x100137;

}  // namespace MenuCode
