// A fresh, empty folder under the temp folder for one test, removed with everything in
// it when the test ends. Removal never follows a link out of the folder.
#pragma once

#include <string>
#include <string_view>

namespace lumenor::testing {

class TempFolder {
 public:
  TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder();

  // The folder's path, ending with a backslash.
  const std::wstring& Path() const { return path_; }
  std::wstring operator/(std::wstring_view name) const { return path_ + std::wstring(name); }

 private:
  std::wstring path_;
};

// Deletes a folder and everything below it; links are removed, never entered.
void RemoveTree(const std::wstring& folder);

// The whole content of a file as bytes; empty if it cannot be read.
std::string ReadFileBytes(const std::wstring& path);
bool WriteFileBytes(const std::wstring& path, std::string_view bytes);
bool FileExists(const std::wstring& path);

}  // namespace lumenor::testing
