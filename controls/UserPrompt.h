// How a page tells the user something or asks a question: the system's message
// box, unless a test answers in its place.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace lumenor {

// Returns the button chosen (IDOK, IDYES, ...). An empty caption is the system's default.
using MessageBoxFunction =
    std::function<int(HWND owner, const std::wstring& text, const std::wstring& caption, UINT type)>;

inline int SystemMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption, UINT type) {
  return ::MessageBoxW(owner, text.c_str(), caption.empty() ? nullptr : caption.c_str(), type);
}

}  // namespace lumenor
