#pragma once

#include <cstdint>
#include <string_view>

// The CRC-32 of archive formats, of `bytes` behind those that gave `before`.
uint32_t crc32(std::string_view bytes, uint32_t before = 0);
