#include "editor/text/content_hash.h"

#include <sys/random.h>

#include <algorithm>
#include <cstring>
#include <ctime>

namespace {

using Keys = std::array<uint64_t, 4>;
constexpr Keys DefaultKeys{0x9E3779B97F4A7C15, 0xC2B2AE3D27D4EB4F, 0x165667B19E3779F9,
                           0xD6E8FEB86659FD93};

// Odd, so that no multiplication loses bits.
Keys makeKeys() {
  Keys keys{};
  if (getrandom(keys.data(), sizeof keys, GRND_NONBLOCK) != sizeof keys) {
    keys.fill(static_cast<uint64_t>(time(nullptr)));
  }
  for (size_t i = 0; i < keys.size(); ++i) keys[i] = (keys[i] ^ DefaultKeys[i]) | 1;
  return keys;
}

const Keys& keys() {
  static const Keys made = makeKeys();
  return made;
}

// Both halves of the product.
uint64_t mix(uint64_t a, uint64_t b) {
  const auto product = static_cast<unsigned __int128>(a) * b;
  return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

}  // namespace

ContentHash::ContentHash() : lanes_(keys()) {}

void ContentHash::addBlocks(Lanes& lanes, std::string_view blocks) {
  const Keys key = keys();
  Lanes present = lanes;
  for (size_t at = 0; at < blocks.size(); at += BlockSize) {
    uint64_t words[2 * std::tuple_size_v<Lanes>];
    memcpy(words, blocks.data() + at, sizeof words);
    for (size_t i = 0; i < present.size(); ++i) {
      present[i] += mix(words[2 * i] ^ key[i] ^ present[i], words[2 * i + 1] ^ key[3 - i]);
    }
  }
  lanes = present;
}

void ContentHash::add(std::string_view bytes) {
  size_ += bytes.size();
  if (restSize_ > 0) {
    const size_t taken = std::min(BlockSize - restSize_, bytes.size());
    memcpy(rest_.data() + restSize_, bytes.data(), taken);
    restSize_ += taken;
    bytes.remove_prefix(taken);
    if (restSize_ < BlockSize) return;
    addBlocks(lanes_, {rest_.data(), BlockSize});
    restSize_ = 0;
  }
  const size_t whole = bytes.size() - bytes.size() % BlockSize;
  addBlocks(lanes_, bytes.substr(0, whole));
  restSize_ = bytes.size() - whole;
  memcpy(rest_.data(), bytes.data() + whole, restSize_);
}

ContentHash::Value ContentHash::value() const {
  std::array<char, BlockSize> last = rest_;
  std::fill(last.begin() + static_cast<std::ptrdiff_t>(restSize_), last.end(), '\0');
  Lanes lanes = lanes_;
  addBlocks(lanes, {last.data(), last.size()});
  return {mix(lanes[0] ^ size_, lanes[1] | 1) ^ mix(lanes[2] ^ size_, lanes[3] | 1),
          mix(lanes[1] ^ size_, lanes[2] | 1) ^ mix(lanes[3] ^ size_, lanes[0] | 1)};
}
