#include "demo/png_file.h"

#include <png.h>

bool writePng(const std::string& file, const std::vector<unsigned>& pixels, int width, int height) {
  constexpr int Channels = 3;
  std::vector<unsigned char> bytes;
  bytes.reserve(pixels.size() * Channels);
  for (unsigned pixel : pixels) {
    for (int shift : {16, 8, 0}) bytes.push_back(static_cast<unsigned char>(pixel >> shift));
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = width;
  image.height = height;
  image.format = PNG_FORMAT_RGB;
  return png_image_write_to_file(&image, file.c_str(), 0, bytes.data(), 0, nullptr) != 0;
}
