#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

// An object that counts its holders, who may be on several threads.
class Counted {
 public:
  Counted() = default;
  Counted(const Counted&) {}  // a copy has holders of its own
  Counted& operator=(const Counted&) = delete;

 private:
  template <class T>
  friend class Shared;
  mutable std::atomic<int64_t> holders_{0};
};

// One holder of a T, which goes with its last one.
template <class T>
class Shared {
 public:
  Shared() = default;
  explicit Shared(T* object) : object_(object) { hold(); }
  Shared(const Shared& other) : object_(other.object_) { hold(); }
  Shared(Shared&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Shared& operator=(Shared other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Shared() {
    if (object_ && object_->holders_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete object_;
  }

  // Nobody else holds it, so it may be changed.
  bool alone() const { return object_->holders_.load(std::memory_order_acquire) == 1; }

  T* get() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  void hold() {
    if (object_) object_->holders_.fetch_add(1, std::memory_order_relaxed);
  }
  T* object_ = nullptr;
};
