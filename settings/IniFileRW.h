// Reader and writer of an INI file through the system's private-profile functions.
// One object per use, made where it is needed; it holds no open file. Whole numbers are
// written in decimal, and a missing key, section or file reads as 1 (the option and
// selection readers rely on that).
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace lumenor {

class CIniFileRW {
 public:
  // Longest full path the file may have, in characters.
  static constexpr size_t kMaxPath = 255;

  // The file `fileName` in the running executable's folder.
  explicit CIniFileRW(std::wstring_view fileName);
  // The file at `fullPath`, as given.
  static CIniFileRW AtPath(std::wstring_view fullPath);

  virtual ~CIniFileRW() = default;

  const std::wstring& Path() const { return path_; }
  // False when the path is unknown or too long to be used; every read then yields the
  // missing-key value and every write fails.
  bool HasUsablePath() const { return !path_.empty() && path_.size() <= kMaxPath; }

  bool WriteInt(std::wstring_view section, std::wstring_view key, int value) const;
  bool WriteString(std::wstring_view section, std::wstring_view key, std::wstring_view text) const;
  // Removes the key; true when it is gone (also when it was never there).
  bool DeleteKey(std::wstring_view section, std::wstring_view key) const;
  // The stored whole number; 1 when the key, section or file is missing.
  int ReadInt(std::wstring_view section, std::wstring_view key) const;
  // The stored text, whole; false (and `text` emptied) when nothing was read.
  bool ReadString(std::wstring_view section, std::wstring_view key, std::wstring& text) const;

  // A section read in one go, its keys then read as ReadInt reads them: a list of a
  // thousand entries read key by key costs the system a thousand reads of the file.
  class Section {
   public:
    int ReadInt(std::wstring_view key) const;

   private:
    friend class CIniFileRW;
    std::unordered_map<std::wstring, std::wstring> values_;  // by name in lower case; the first of a name
  };
  // Empty (every key missing) when the section or the file is missing, or the section is
  // too large to be a setting.
  Section ReadSection(std::wstring_view section) const;

 private:
  CIniFileRW() = default;

  std::wstring path_;
};

}  // namespace lumenor
