#include "settings/IniFileRW.h"

#include "base/ModulePath.h"

#include <windows.h>

namespace lumenor {

namespace {

constexpr int kMissingKeyValue = 1;
constexpr DWORD kMaxStringValue = 65536;

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

}  // namespace lumenor
