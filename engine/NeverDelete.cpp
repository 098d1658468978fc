#include "engine/NeverDelete.h"

#include "engine/FilePath.h"
#include "engine/FolderWalk.h"

#include <windows.h>

#include <array>

namespace lumenor {

namespace {

bool SameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                                      static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

bool EndsWithText(std::wstring_view text, std::wstring_view end) {
  return text.size() > end.size() && SameText(text.substr(text.size() - end.size()), end);
}

bool Exists(const std::wstring& path) {
  return GetFileAttributesW(ForFileApi(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace

std::wstring_view KeptReason(KeptBecause because) {
  switch (because) {
    case KeptBecause::kNone:
      return L"";
    case KeptBecause::kBrowserFile:
      return L"browser data that is never deleted";
    case KeptBecause::kBrowserFolder:
      return L"browser extensions and their data are never deleted";
    case KeptBecause::kLevelDb:
      return L"part of a LevelDB database, which goes whole or not at all";
    case KeptBecause::kSqliteJournal:
      return L"the journal of a database that stays";
  }
  return L"kept";
}

bool IsNeverDeletedName(std::wstring_view fileName) {
  static constexpr std::array<std::wstring_view, 8> kNames = {
      L"Local State",  // holds the key that decrypts the cookies and passwords
      L"Preferences",   L"Secure Preferences", L"Bookmarks",
      L"key4.db",        // Firefox's keys: the primary password and certificates too
      L"cert9.db",       //
      L"places.sqlite",  // Firefox's history and bookmarks in one: cleaned row by row
      L"Web Data",       // Chromium's search engines, addresses and cards besides form data
  };
  for (const std::wstring_view name : kNames) {
    if (SameText(name, fileName)) return true;
  }
  return false;
}

bool IsKeptBrowserFolder(const std::wstring& parent, std::wstring_view name) {
  if (SameText(name, L"Local Extension Settings") || SameText(name, L"Sync Extension Settings")) return true;
  if (!SameText(name, L"Extensions") && !SameText(name, L"Collections")) return false;
  return Exists(parent + L"Preferences") || Exists(parent + L"Secure Preferences");
}

bool LiesInKeptBrowserFolder(const std::wstring& folder) {
  // From the root on: "C:\", then each name in turn with the folder that holds it.
  size_t start = folder.find(L'\\');
  while (start != std::wstring::npos && start + 1 < folder.size()) {
    const size_t end = folder.find(L'\\', start + 1);
    if (end == std::wstring::npos) break;
    const std::wstring parent = folder.substr(0, start + 1);
    if (IsKeptBrowserFolder(parent, std::wstring_view(folder).substr(start + 1, end - start - 1))) return true;
    start = end;
  }
  return false;
}

bool IsLevelDbFolder(const std::wstring& folder) {
  if (!Exists(folder + L"CURRENT")) return false;
  bool manifest = false;
  (void)ListFolder(folder, L"MANIFEST-*",
                   [&manifest](const WalkEntry& entry) { manifest = manifest || !entry.IsFolder(); });
  return manifest;
}

std::wstring_view SqliteDatabaseOf(std::wstring_view fileName) {
  for (const std::wstring_view suffix : {std::wstring_view(L"-journal"), std::wstring_view(L"-wal")}) {
    if (EndsWithText(fileName, suffix)) return fileName.substr(0, fileName.size() - suffix.size());
  }
  return {};
}

}  // namespace lumenor
