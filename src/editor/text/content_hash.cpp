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

ContentHash::ContentHash() : lanes_{keys()[0], keys()[1]} {}

void ContentHash::addBlock(const char* block) {
  uint64_t words[4];
  memcpy(words, block, sizeof words);
  const Keys& key = keys();
  lanes_[0] = mix(words[0] ^ key[2] ^ lanes_[0], words[1] ^ key[3]) + lanes_[0];
  lanes_[1] = mix(words[2] ^ key[3] ^ lanes_[1], words[3] ^ key[2]) + lanes_[1];
}

void ContentHash::add(std::string_view bytes) {
  size_ += bytes.size();
  if (restSize_ > 0) {
    const size_t taken = std::min(BlockSize - restSize_, bytes.size());
    memcpy(rest_.data() + restSize_, bytes.data(), taken);
    restSize_ += taken;
    bytes.remove_prefix(taken);
    if (restSize_ < BlockSize) return;
    addBlock(rest_.data());
    restSize_ = 0;
  }
  for (; bytes.size() >= BlockSize; bytes.remove_prefix(BlockSize)) addBlock(bytes.data());
  std::copy(bytes.begin(), bytes.end(), rest_.begin());
  restSize_ = bytes.size();
}

ContentHash::Value ContentHash::value() const {
  ContentHash all = *this;
  std::fill(all.rest_.begin() + static_cast<std::ptrdiff_t>(restSize_), all.rest_.end(), '\0');
  all.addBlock(all.rest_.data());
  return {mix(all.lanes_[0] ^ size_, keys()[1] ^ all.lanes_[1]),
          mix(all.lanes_[1] ^ size_, keys()[0] ^ all.lanes_[0])};
}
