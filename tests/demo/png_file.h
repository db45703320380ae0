#pragma once

#include <string>
#include <vector>

// Writes 0xRRGGBB pixels, row after row, as a PNG file. False when it can't be written.
bool writePng(const std::string& file, const std::vector<unsigned>& pixels, int width, int height);
