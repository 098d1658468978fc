// The rules a folder from outside the program (environment, registry, other programs'
// ini files, settings, command line, user input) passes before anything below it is
// walked to be scanned or deleted: one canonical absolute form, never a link, and never
// a folder that is, or holds, the system, the programs, the user's own files or a whole
// drive. Every walk that deletes takes a SafeFolder, and only the guard makes one.
#pragma once

#include "engine/CanonicalFolder.h"
#include "engine/FilePath.h"
#include "engine/SystemPaths.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

struct WalkEntry;

// Whether `outer` is `inner` or one of the folders above it; both canonical. Case does
// not count.
bool FolderContains(std::wstring_view outer, std::wstring_view inner);

// A path the folder rules have read, handed down as it is from where it came in: its
// canonical text and the "\\?\" form the file API takes, each made once. A folder's path
// ends with "\"; an entry's is its folder's followed by its name.
class SafePath {
 public:
  const std::wstring& Text() const { return text_; }
  const std::wstring& ForApi() const { return forApi_; }
  // For an entry's path: its folder (ending with "\"), in both forms, and its name.
  std::wstring_view Folder() const;
  std::wstring_view FolderForApi() const;
  std::wstring_view Name() const;
  // The entry `name` of this folder: a name a listing of it gave, or one that
  // IsUnambiguousFileName accepts. Nothing is read again.
  SafePath Entry(std::wstring_view name) const;
  // This folder as an entry of the folder above it: without its final "\" (a root
  // keeps it).
  SafePath AsEntry() const;

 private:
  friend std::optional<SafePath> ReadFolderPath(std::wstring_view folder, FolderVerdict* refusal);
  friend struct WalkEntry;
  SafePath(std::wstring text, std::wstring forApi) : text_(std::move(text)), forApi_(std::move(forApi)) {}
  std::wstring text_;
  std::wstring forApi_;
};

// `folder` read by the rules of CanonicalFolder; nothing, and `refusal` set, where it
// yields nothing.
std::optional<SafePath> ReadFolderPath(std::wstring_view folder, FolderVerdict* refusal = nullptr);

// A folder the guard let through: canonical, ending with "\".
class SafeFolder {
 public:
  const std::wstring& Path() const { return path_.Text(); }
  const std::wstring& ForApi() const { return path_.ForApi(); }
  const SafePath& Where() const { return path_; }

 private:
  friend class FolderGuard;
  explicit SafeFolder(SafePath path) : path_(std::move(path)) {}
  SafePath path_;
};

class FolderGuard {
 public:
  // Takes the protected folders of this machine (and of this program) from `paths`.
  explicit FolderGuard(const SystemPaths& paths);

  struct Check {
    FolderVerdict verdict = FolderVerdict::kAllowed;
    std::wstring folder;                 // the canonical form, empty when there is none
    std::optional<SafePath> path;        // the same, with its form for the file API
    std::optional<SafeFolder> admitted;  // set when everything below it may be walked
  };

  // Decides on one folder, once: canonical form, then protected folders (by name and,
  // where the folder exists, by identity, so that short names and other spellings of the
  // same folder are caught), then whether the folder itself is a link.
  Check Inspect(std::wstring_view folder) const;

  // The folder, when everything below it may be walked; nothing otherwise.
  std::optional<SafeFolder> Admit(std::wstring_view folder, Check* check = nullptr) const;

  const std::vector<std::wstring>& ProtectedFolders() const { return protected_; }

  // Whether the folder (canonical) is one that Windows and programs expect to find: the
  // temporary folder, Recent, Cookies, History, the browser cache and the like. An erase
  // empties such a folder but never removes it.
  bool IsWellKnownFolder(std::wstring_view canonical) const;

 private:
  bool IsProtected(const SafePath& canonical) const;

  std::vector<std::wstring> protected_;
  std::vector<std::wstring> wellKnown_;
  // The protected folders and every folder above them, as the file system knows them.
  std::vector<FileIdentity> guardedIdentities_;
};

// Whether the folder (canonical, existing) is itself a reparse point: by its attribute,
// and by its reparse tag where the system tells it.
bool IsLinkFolder(const std::wstring& folder);
bool IsLinkFolder(const SafePath& folder);

}  // namespace lumenor
