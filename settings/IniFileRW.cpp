#include "settings/IniFileRW.h"

#include "base/AsciiText.h"
#include "base/ModulePath.h"

#include <windows.h>

#include <cstdint>

namespace lumenor {

namespace {

constexpr int kMissingKeyValue = 1;
constexpr DWORD kMaxStringValue = 65536;
constexpr DWORD kMaxSectionText = 4 * 1024 * 1024;
// The system reads a number from no more than the first 29 characters of its value.
constexpr size_t kNumberCharacters = 29;

std::wstring LowerCase(std::wstring_view text) {
  std::wstring lower(text);
  for (wchar_t& c : lower) c = AsciiLower(c);
  return lower;
}

// A value as the system's GetPrivateProfileInt reads it: without a pair of quotes around
// it; then blanks, a sign and a "0x", "0o" or "0b" before the digits, which end at the
// first character that is not one; the result taken as unsigned. Empty: missing.
int ProfileNumber(std::wstring_view value) {
  if (value.size() >= 2 && (value.front() == L'"' || value.front() == L'\'') && value.back() == value.front()) {
    value = value.substr(1, value.size() - 2);
  }
  value = value.substr(0, kNumberCharacters);
  if (value.empty()) return kMissingKeyValue;
  size_t at = 0;
  while (at < value.size() && value[at] <= L' ') ++at;
  bool negative = false;
  if (at < value.size() && (value[at] == L'+' || value[at] == L'-')) negative = value[at++] == L'-';
  unsigned base = 10;
  if (at + 1 < value.size() && value[at] == L'0') {
    const wchar_t kind = value[at + 1];
    base = kind == L'x' ? 16 : kind == L'o' ? 8 : kind == L'b' ? 2 : 10;
    if (base != 10) at += 2;
  }
  uint32_t total = 0;
  for (; at < value.size(); ++at) {
    const wchar_t c = AsciiLower(value[at]);
    const unsigned digit = c >= L'0' && c <= L'9'   ? static_cast<unsigned>(c - L'0')
                           : c >= L'a' && c <= L'z' ? static_cast<unsigned>(c - L'a' + 10)
                                                    : base;
    if (digit >= base) break;
    total = total * base + digit;  // wraps as the system's does
  }
  return static_cast<int>(negative ? 0u - total : total);
}

}  // namespace

CIniFileRW::CIniFileRW(std::wstring_view fileName) {
  const std::wstring folder = ModuleFolder();
  if (!folder.empty()) {
    path_ = folder;
    path_ += fileName;
  }
}

CIniFileRW CIniFileRW::AtPath(std::wstring_view fullPath) {
  CIniFileRW file;
  file.path_ = fullPath;
  return file;
}

bool CIniFileRW::WriteInt(std::wstring_view section, std::wstring_view key, int value) const {
  return WriteString(section, key, std::to_wstring(value));
}

bool CIniFileRW::WriteString(std::wstring_view section, std::wstring_view key, std::wstring_view text) const {
  if (!HasUsablePath()) {
    return false;
  }
  return WritePrivateProfileStringW(std::wstring(section).c_str(), std::wstring(key).c_str(),
                                    std::wstring(text).c_str(), path_.c_str()) != FALSE;
}

bool CIniFileRW::DeleteKey(std::wstring_view section, std::wstring_view key) const {
  if (!HasUsablePath()) {
    return false;
  }
  return WritePrivateProfileStringW(std::wstring(section).c_str(), std::wstring(key).c_str(), nullptr, path_.c_str()) !=
         FALSE;
}

int CIniFileRW::ReadInt(std::wstring_view section, std::wstring_view key) const {
  if (!HasUsablePath()) {
    return kMissingKeyValue;
  }
  // The system parses an optional minus sign and hands the result back as unsigned.
  const UINT value =
      GetPrivateProfileIntW(std::wstring(section).c_str(), std::wstring(key).c_str(), kMissingKeyValue, path_.c_str());
  return static_cast<int>(value);
}

bool CIniFileRW::ReadString(std::wstring_view section, std::wstring_view key, std::wstring& text) const {
  text.clear();
  if (!HasUsablePath()) {
    return false;
  }
  const std::wstring sectionName(section);
  const std::wstring keyName(key);
  std::wstring buffer(256, L'\0');
  for (;;) {
    const DWORD length = GetPrivateProfileStringW(sectionName.c_str(), keyName.c_str(), L"", buffer.data(),
                                                  static_cast<DWORD>(buffer.size()), path_.c_str());
    if (length + 1 < buffer.size()) {
      buffer.resize(length);
      text = std::move(buffer);
      return !text.empty();
    }
    // The value filled the buffer and may have been cut short: read it again with more
    // room, and give up on a value too long to be a setting rather than return part of it.
    if (buffer.size() >= kMaxStringValue) {
      return false;
    }
    buffer.resize(buffer.size() * 2);
  }
}

CIniFileRW::Section CIniFileRW::ReadSection(std::wstring_view section) const {
  Section read;
  if (!HasUsablePath()) {
    return read;
  }
  const std::wstring sectionName(section);
  // "name=value" lines, each ending with a null, the last with two.
  std::wstring text(4096, L'\0');
  for (;;) {
    const DWORD length =
        GetPrivateProfileSectionW(sectionName.c_str(), text.data(), static_cast<DWORD>(text.size()), path_.c_str());
    if (length + 2 < text.size()) {
      text.resize(length);
      break;
    }
    if (text.size() >= kMaxSectionText) {
      return read;
    }
    text.resize(text.size() * 2);
  }
  for (size_t start = 0; start < text.size();) {
    size_t end = text.find(L'\0', start);
    if (end == std::wstring::npos) end = text.size();
    const std::wstring_view line(text.data() + start, end - start);
    const size_t equals = line.find(L'=');
    if (equals != std::wstring_view::npos) {
      (void)read.values_.try_emplace(LowerCase(line.substr(0, equals)), line.substr(equals + 1));  // the first stays
    }
    start = end + 1;
  }
  return read;
}

int CIniFileRW::Section::ReadInt(std::wstring_view key) const {
  const auto found = values_.find(LowerCase(key));
  return found == values_.end() ? kMissingKeyValue : ProfileNumber(found->second);
}

}  // namespace lumenor
