#pragma once

// File masks: '?', '*', sets "[a-z^q]", alternatives "{a,b}". Case is ignored, by ASCII in the
// 8-bit form and by foldChar in the wide one. Time is at most pattern length times text length.
bool wildMatch(const char* pattern, const char* text);
bool wildMatch(const wchar_t* pattern, const wchar_t* text);
