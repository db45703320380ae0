#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

// A fuzz target over its seeds, each whole, cut at every length and damaged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

// What all seeds get together, and one at most: a target with many doesn't take longer.
constexpr size_t DamagedCopies = 3000, CopiesOfASeed = 2000, BytesOfASeed = 1'000'000;
constexpr size_t BytesOfADamage = 100;

void tryInput(const std::string& bytes) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

std::vector<std::string> seeds() {
  std::vector<std::string> result;
  for (const auto& item : std::filesystem::directory_iterator(TD_SEEDS)) {
    std::ostringstream content;
    content << std::ifstream(item.path(), std::ios::binary).rdbuf();
    result.push_back(content.str());
  }
  return result;
}

TEST(Fuzz, SeedsWholeAndCutAtEveryLengthAreTaken) {
  ASSERT_FALSE(seeds().empty());
  for (const std::string& seed : seeds()) {
    ASSERT_FALSE(seed.empty());
    for (size_t length = 0; length <= seed.size(); ++length) tryInput(seed.substr(0, length));
  }
}

TEST(Fuzz, DamagedSeedsAreTaken) {
  std::mt19937 random(1);
  const std::vector<std::string> all = seeds();
  ASSERT_FALSE(all.empty());
  for (const std::string& seed : all) {
    ASSERT_FALSE(seed.empty());
    const size_t copies =
        std::min({DamagedCopies / all.size(), CopiesOfASeed, BytesOfASeed / seed.size()});
    for (size_t copy = 0; copy < copies; ++copy) {
      std::string bytes = seed;
      for (size_t i = 0; i < 1 + bytes.size() / BytesOfADamage; ++i) {
        const size_t place = random() % bytes.size();
        switch (random() % 3) {
          case 0:
            bytes[place] = static_cast<char>(random());
            break;
          case 1:
            bytes.insert(place, bytes, random() % bytes.size(), random() % BytesOfADamage);
            break;
          default:
            bytes.erase(place, 1 + random() % 3);
            if (bytes.empty()) bytes = seed;
            break;
        }
      }
      tryInput(bytes);
    }
  }
}

}  // namespace
