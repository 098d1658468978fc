// The rules a folder from outside the program (environment, registry, other programs'
// ini files, settings, command line, user input) passes before anything below it is
// walked to be scanned or deleted: one canonical absolute form, never a link, and never
// a folder that is, or holds, the system, the programs, the user's own files or a whole
// drive. Every walk that deletes takes a SafeFolder, and only the guard makes one.
#pragma once

#include "engine/CanonicalFolder.h"
#include "engine/SystemPaths.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// Whether `outer` is `inner` or one of the folders above it; both canonical. Case does
// not count.
bool FolderContains(std::wstring_view outer, std::wstring_view inner);

// A folder the guard let through: canonical, ending with "\".
class SafeFolder {
 public:
  const std::wstring& Path() const { return path_; }

 private:
  friend class FolderGuard;
  explicit SafeFolder(std::wstring path) : path_(std::move(path)) {}
  std::wstring path_;
};

class FolderGuard {
 public:
  // Takes the protected folders of this machine (and of this program) from `paths`.
  explicit FolderGuard(const SystemPaths& paths);

  struct Check {
    FolderVerdict verdict = FolderVerdict::kAllowed;
    std::wstring folder;  // the canonical form, empty when there is none
  };

  // Decides on one folder: canonical form, then protected folders (by name and, where the
  // folder exists, by identity, so that short names and other spellings of the same
  // folder are caught), then whether the folder itself is a link.
  Check Inspect(std::wstring_view folder) const;

  // The folder, when everything below it may be walked; nothing otherwise.
  std::optional<SafeFolder> Admit(std::wstring_view folder, Check* check = nullptr) const;

  const std::vector<std::wstring>& ProtectedFolders() const { return protected_; }

  // Whether the folder (canonical) is one that Windows and programs expect to find: the
  // temporary folder, Recent, Cookies, History, the browser cache and the like. An erase
  // empties such a folder but never removes it.
  bool IsWellKnownFolder(std::wstring_view canonical) const;

 private:
  struct Identity {
    uint32_t volume = 0;
    uint64_t file = 0;
    bool operator==(const Identity&) const = default;
  };
  static std::optional<Identity> IdentityOf(const std::wstring& folder);
  bool IsProtected(const std::wstring& canonical) const;

  std::vector<std::wstring> protected_;
  std::vector<std::wstring> wellKnown_;
  // The protected folders and every folder above them, as the file system knows them.
  std::vector<Identity> guardedIdentities_;
};

// Whether the folder (canonical, existing) is itself a reparse point: by its attribute,
// and by its reparse tag where the system tells it.
bool IsLinkFolder(const std::wstring& folder);

}  // namespace lumenor
