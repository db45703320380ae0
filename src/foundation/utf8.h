#pragma once

#include <string>
#include <string_view>

#include "foundation/westring.h"

// Wide text to UTF-8, as every path goes to the system. A value at or below 0x7F, negative ones
// included, becomes the one byte of its low 8 bits, so decodeFileName's bytes come back as they
// were.
Estring toUtf8(const wchar_t* text);
Estring toUtf8(const Westring& text);

// The general decoder: an invalid byte gives the Latin-1 character of its number. True when the
// whole input was valid.
bool decodeUtf8(const char* bytes, Westring& result);
Westring fromUtf8(const char* bytes);

// The same for the character that `bytes`, one at least, begin with; returns how many it took. One
// that is cut by the end of `bytes` is invalid.
size_t decodeCharacter(std::string_view bytes, wchar_t& character);

// The lossless decoder for names that come from the system: each byte that is no part of valid
// UTF-8 (overlong forms, surrogates and values above U+10FFFF are invalid here) becomes the
// negative wide value whose low 8 bits are that byte. toUtf8 gives the same bytes back.
Westring decodeFileName(const char* bytes);
// The same into a caller's buffer of at least strlen(bytes)+1 characters; returns the length.
int decodeFileName(const char* bytes, wchar_t* buffer);

// The same for the character that `bytes`, one at least, begin with; returns how many it took. One
// that is cut by the end of `bytes` is raw bytes.
size_t decodeExactCharacter(std::string_view bytes, wchar_t& character);
// Appends one character, a negative value as the byte of its low 8 bits.
void appendUtf8(wchar_t character, std::string& out);

// Valid UTF-8 for the toolkit, whatever the text holds: a raw byte shows as the Latin-1 character
// of its number, any other value that is no character as U+2302.
Estring toDisplayUtf8(const wchar_t* text);
// The one character a cell shows for `character`, by the same rule (control characters unchanged).
wchar_t displayCharacter(wchar_t character);

Estring narrow(const Westring& text);  // low byte of each character
