// Thread starters a page takes in place of the system's (its SetThreadStarter): one that
// fails as the system does when no thread can be made, and one whose threads wait before
// their work until the test releases them, so that a page's run stays under way.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <system_error>
#include <thread>

namespace lumenor::testing {

using Starter = std::function<std::thread(std::function<void()> entry)>;

inline Starter FailingThreadStarter() {
  return [](std::function<void()>) -> std::thread {
    throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  };
}

class HeldThreads {
 public:
  HeldThreads()
      : released_(::CreateEventW(nullptr, TRUE, FALSE, nullptr), [](HANDLE event) {
          if (event != nullptr) ::CloseHandle(event);
        }) {}
  HeldThreads(const HeldThreads&) = delete;
  HeldThreads& operator=(const HeldThreads&) = delete;
  // Released at the latest here, so that a page joining its thread never waits forever.
  ~HeldThreads() { Release(); }

  Starter Held() const {
    return [released = released_](std::function<void()> entry) {
      return std::thread([released, entry = std::move(entry)] {
        (void)::WaitForSingleObject(released.get(), INFINITE);
        entry();
      });
    };
  }
  void Release() const { (void)::SetEvent(released_.get()); }

 private:
  std::shared_ptr<void> released_;
};

}  // namespace lumenor::testing
