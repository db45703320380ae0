// A shelf keeps boxes by name.
#include <map>
#include <string_view>
#include "shelf.h"
import std.core;

namespace store::inner {

template <typename Key, class Value = int>
concept Placeable = requires(Key key) {
  { key < key } -> std::same_as<bool>;
};

class Shelf final : public Base {
 public:
  explicit Shelf(std::string name) noexcept : name_(std::move(name)) {}
  virtual ~Shelf() override = default;
  Shelf(const Shelf&) = delete;

  [[nodiscard]] constexpr auto size() const -> std::size_t { return boxes_.size(); }
  bool operator==(const Shelf& other) const { return this == &other; }

 private:
  std::map<std::string, std::unique_ptr<Box>> boxes_;
  mutable std::mutex lock_;
  std::string name_{"shelf \"one\"\t"};
};

const auto pattern = R"(C:\new\"folder" and
a second line that belongs to it)";
const auto wide = LR"(\w+)", narrow = u8R"(")";
const char marks[] = {'a', '\n', '"', '/', L'x', u8'\x7F', '\u00e4'};
const long big = 1'234'567'890L, colour = 0xDEAD'BEEF, bits = 0b1111'0000;
const float ratio = 1.0e+10f;

/* Takes a box from the shelf.
 * "Quotes" and 'marks' mean nothing here. // nor does this
 */
Box* Shelf::take(std::string_view name) try {
  std::lock_guard guard(lock_);
  if (auto found = boxes_.find(name); found != boxes_.end() and not name.empty()) {
    return found->second.release();
  }
  for (auto& [key, box] : boxes_) {
    if (dynamic_cast<const Crate*>(box.get()) != nullptr) co_yield key;
  }
  return new (std::nothrow) Box{.width = 10, .height = 2 << 3};
} catch (const std::exception& error) {
  throw;
} catch (...) {
  return nullptr;
}

#define CHECK(what) if (!(what)) throw std::runtime_error(#what " failed")
#ifdef __cplusplus
extern "C" int shelf_open(void);
#endif

auto add = [](auto left, auto right) mutable noexcept { return left + right; };
using Names = std::vector<std::string>;
static_assert(sizeof(int) >= 4 && true, "int is small");
const char* open = "not closed
int after = 1;
}  // namespace store::inner
const auto raw = R"(never closed
int still = "text";
