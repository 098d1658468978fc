#include "junk/JunkMatcher.h"

#include <windows.h>

namespace lumenor {

namespace {

// A base of exactly eight characters that begins with `prefix`, and `extension`.
bool EightCharacterBase(std::wstring_view base, std::wstring_view extension, std::wstring_view prefix,
                        std::wstring_view wantedExtension) {
  return base.size() == 8 && base.starts_with(prefix) && extension == wantedExtension;
}

bool SpecialMaskAccepts(std::wstring_view mask, std::wstring_view name, std::wstring_view base,
                        std::wstring_view extension) {
  if (mask == L"*.~*") return extension.starts_with(L'~');
  if (mask == L"~*.*") return base.starts_with(L'~');
  if (mask == L"*.??~") return extension.size() == 3 && extension.back() == L'~';
  if (mask == L"ffastun.*") return base == L"ffastun";
  if (mask == L"chklist.*") return base == L"chklist";
  if (mask == L"file????._dd") return EightCharacterBase(base, extension, L"file", L"_dd");
  if (mask == L"twain???.mtx") return EightCharacterBase(base, extension, L"twain", L"mtx");
  if (mask == L"iebak.dat" || mask == L"system.1st" || mask == L"suhdlog.dat" || mask == L"modemdet.txt" ||
      mask == L"thumbs.db" || mask == L"mscreate.dir") {
    return name == mask;
  }
  return false;
}

}  // namespace

bool MaskAccepts(std::wstring_view mask, std::wstring_view lowerName) {
  const size_t dot = lowerName.rfind(L'.');
  if (dot == std::wstring_view::npos) {
    return false;
  }
  const std::wstring_view base = lowerName.substr(0, dot);
  const std::wstring_view extension = lowerName.substr(dot + 1);
  if (SpecialMaskAccepts(mask, lowerName, base, extension)) {
    return true;
  }
  // Every mask, the special ones too when their own rule failed: "*." and the extension.
  return mask.size() == extension.size() + 2 && mask.starts_with(L"*.") && mask.substr(2) == extension;
}

std::optional<size_t> FirstAcceptingMask(std::wstring_view lowerName, std::span<const std::wstring> masks) {
  for (size_t index = 0; index < masks.size(); ++index) {
    if (MaskAccepts(masks[index], lowerName)) {
      return index;
    }
  }
  return std::nullopt;
}

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
