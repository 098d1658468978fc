// Owning wrapper for kernel handles that are closed with CloseHandle.
#pragma once

#include <windows.h>

#include <utility>

namespace lumenor {

class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(HANDLE handle) : handle_(handle) {}
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) {
      Reset(std::exchange(other.handle_, nullptr));
    }
    return *this;
  }
  ~UniqueHandle() { Reset(); }

  HANDLE Get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE; }

  void Reset(HANDLE handle = nullptr) {
    if (*this) {
      // Closing a handle we own cannot usefully fail; there is nothing left to do if it does.
      (void)CloseHandle(handle_);
    }
    handle_ = handle;
  }

 private:
  HANDLE handle_ = nullptr;
};

}  // namespace lumenor
