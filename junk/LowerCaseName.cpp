// LowerCaseName (JunkMatcher.h): the system's own invariant lower case for the letters
// beyond ASCII, which the matcher itself, free of windows, does without.
#include "junk/JunkMatcher.h"

#include <windows.h>

namespace lumenor {

std::wstring LowerCaseName(std::wstring_view name) {
  std::wstring lower(name);
  bool ascii = true;
  for (wchar_t& c : lower) {
    if (c >= L'A' && c <= L'Z') {
      c = static_cast<wchar_t>(c - L'A' + L'a');
    } else if (c >= 0x80) {
      ascii = false;
    }
  }
  if (ascii) {
    return lower;  // most names: no need to ask the system
  }
  std::wstring mapped(name.size(), L'\0');
  const int length = LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_LOWERCASE, name.data(), static_cast<int>(name.size()),
                                   mapped.data(), static_cast<int>(mapped.size()), nullptr, nullptr, 0);
  // A mapping that failed or changed the length is not used: the ASCII letters at least
  // are lowered.
  return length == static_cast<int>(name.size()) ? mapped : lower;
}

}  // namespace lumenor
