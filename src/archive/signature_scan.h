#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "archive/archive_reading.h"

// In a pattern: any byte matches.
inline constexpr char AnyByte = '?';

// The first place from `begin` on where `pattern` stands, its last byte before `end`. The matcher
// goes byte by byte: one that doesn't match begins anew with itself.
std::optional<uint64_t> findSignature(ArchiveReading& reading, std::string_view pattern,
                                      uint64_t begin, uint64_t end);
// The same in a program that unpacks itself; in any other file nothing is found.
std::optional<uint64_t> findInProgram(ArchiveReading& reading, std::string_view pattern,
                                      uint64_t begin, uint64_t end);
