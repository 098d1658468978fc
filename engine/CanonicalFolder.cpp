#include "engine/CanonicalFolder.h"

#include "base/AsciiText.h"
#include "engine/FileNames.h"

#include <algorithm>
#include <vector>

namespace lumenor {

namespace {

constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kDevicePrefix = L"\\\\.\\";

bool IsDriveLetter(wchar_t c) { return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z'); }

bool HoldsForbiddenCharacter(std::wstring_view name) {
  return std::any_of(name.begin(), name.end(), [](wchar_t c) {
    return c < 32 || c == L'<' || c == L'>' || c == L':' || c == L'"' || c == L'|' || c == L'?' || c == L'*';
  });
}

std::wstring_view WithoutTrailingDotsAndBlanks(std::wstring_view name) {
  while (!name.empty() && (name.back() == L'.' || name.back() == L' ')) name.remove_suffix(1);
  return name;
}

// A server or share name stands as it is written, but never as one the system reads
// otherwise: "." makes "\\?\UNC\.\x" the device path "\\.\x", ".." a step up, and a
// device name a device.
std::optional<FolderVerdict> RefusalOfRootName(std::wstring_view name) {
  if (name == L".") return FolderVerdict::kDevicePath;
  if (HoldsForbiddenCharacter(name) || WithoutTrailingDotsAndBlanks(name).empty()) return FolderVerdict::kInvalidPath;
  if (IsDeviceName(name)) return FolderVerdict::kDevicePath;
  return std::nullopt;
}

// The start of a path: its root in canonical form and where the folders below it begin.
struct PathRoot {
  std::wstring root;  // "C:\" or "\\server\share\"
  std::wstring_view rest;
};

std::optional<PathRoot> SplitShareRoot(std::wstring_view afterSlashes, FolderVerdict& refusal) {
  const size_t serverEnd = afterSlashes.find(L'\\');
  const std::wstring_view server = afterSlashes.substr(0, serverEnd);
  if (server.empty()) {
    refusal = FolderVerdict::kInvalidPath;
    return std::nullopt;
  }
  if (const std::optional<FolderVerdict> refused = RefusalOfRootName(server)) {
    refusal = *refused;
    return std::nullopt;
  }
  std::wstring_view rest = serverEnd == std::wstring_view::npos ? std::wstring_view() : afterSlashes.substr(serverEnd);
  while (!rest.empty() && rest.front() == L'\\') rest.remove_prefix(1);
  const size_t shareEnd = rest.find(L'\\');
  const std::wstring_view share = rest.substr(0, shareEnd);
  if (share.empty()) {
    // A server alone holds shares: no folder of it may be walked whole.
    refusal = FolderVerdict::kProtectedFolder;
    return std::nullopt;
  }
  if (const std::optional<FolderVerdict> refused = RefusalOfRootName(share)) {
    refusal = *refused;
    return std::nullopt;
  }
  PathRoot root;
  root.root = L"\\\\" + std::wstring(server) + L"\\" + std::wstring(share) + L"\\";
  root.rest = shareEnd == std::wstring_view::npos ? std::wstring_view() : rest.substr(shareEnd);
  return root;
}

std::optional<PathRoot> SplitRoot(std::wstring_view path, FolderVerdict& refusal) {
  if (StartsWithAsciiTextIgnoringCase(path, kDevicePrefix)) {
    refusal = FolderVerdict::kDevicePath;
    return std::nullopt;
  }
  if (StartsWithAsciiTextIgnoringCase(path, kLongPrefix)) {
    const std::wstring_view inner = path.substr(kLongPrefix.size());
    if (StartsWithAsciiTextIgnoringCase(inner, L"UNC\\")) {
      return SplitShareRoot(inner.substr(4), refusal);
    }
    // "\\?\C:\..." is a folder; "\\?\C:", "\\?\Volume{...}" and "\\?\GLOBALROOT..." are devices.
    if (inner.size() >= 3 && IsDriveLetter(inner[0]) && inner[1] == L':' && inner[2] == L'\\') {
      return PathRoot{std::wstring{AsciiUpper(inner[0]), L':', L'\\'}, inner.substr(3)};
    }
    refusal = FolderVerdict::kDevicePath;
    return std::nullopt;
  }
  if (path.size() >= 2 && path[0] == L'\\' && path[1] == L'\\') {
    return SplitShareRoot(path.substr(2), refusal);
  }
  if (path.size() >= 2 && IsDriveLetter(path[0]) && path[1] == L':') {
    if (path.size() == 2 || path[2] != L'\\') {
      refusal = FolderVerdict::kRelativePath;  // "C:" and "C:temp" follow the drive's current folder
      return std::nullopt;
    }
    return PathRoot{std::wstring{AsciiUpper(path[0]), L':', L'\\'}, path.substr(3)};
  }
  refusal = FolderVerdict::kRelativePath;
  return std::nullopt;
}

// The finished form judged once more as a whole, whatever route led to it: nothing in
// the device namespace, no step, no device name anywhere in it.
std::optional<FolderVerdict> RefusalOfResult(std::wstring_view canonical) {
  if (StartsWithAsciiTextIgnoringCase(canonical, kDevicePrefix) ||
      StartsWithAsciiTextIgnoringCase(canonical, kLongPrefix)) {
    return FolderVerdict::kDevicePath;
  }
  std::wstring_view rest = canonical.substr(canonical.starts_with(L"\\\\") ? 2 : 3);
  while (!rest.empty()) {
    const size_t end = rest.find(L'\\');
    const std::wstring_view name = rest.substr(0, end);
    if (name.empty() || name == L"." || name == L"..") return FolderVerdict::kInvalidPath;
    if (IsDeviceName(name)) return FolderVerdict::kDevicePath;
    if (end == std::wstring_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  return std::nullopt;
}

}  // namespace

std::wstring_view VerdictReason(FolderVerdict verdict) {
  switch (verdict) {
    case FolderVerdict::kAllowed:
      return L"allowed";
    case FolderVerdict::kRelativePath:
      return L"relative path";
    case FolderVerdict::kDevicePath:
      return L"device path";
    case FolderVerdict::kInvalidPath:
      return L"invalid path";
    case FolderVerdict::kProtectedFolder:
      return L"protected folder";
    case FolderVerdict::kLink:
      return L"link";
  }
  return L"refused";
}

std::optional<std::wstring> CanonicalFolder(std::wstring_view folder, FolderVerdict* refusal) {
  FolderVerdict why = FolderVerdict::kInvalidPath;
  const auto refuse = [&](FolderVerdict verdict) -> std::optional<std::wstring> {
    if (refusal != nullptr) *refusal = verdict;
    return std::nullopt;
  };
  std::wstring path(folder);
  std::replace(path.begin(), path.end(), L'/', L'\\');
  if (path.empty()) return refuse(FolderVerdict::kRelativePath);

  const std::optional<PathRoot> root = SplitRoot(path, why);
  if (!root) return refuse(why);

  std::vector<std::wstring_view> names;
  std::wstring_view rest = root->rest;
  while (!rest.empty()) {
    const size_t end = rest.find(L'\\');
    const std::wstring_view name = rest.substr(0, end);
    rest = end == std::wstring_view::npos ? std::wstring_view() : rest.substr(end + 1);
    if (name.empty() || name == L".") continue;
    if (name == L"..") {
      if (!names.empty()) names.pop_back();
      continue;
    }
    const std::wstring_view trimmed = WithoutTrailingDotsAndBlanks(name);
    if (trimmed.empty() || HoldsForbiddenCharacter(trimmed)) return refuse(FolderVerdict::kInvalidPath);
    if (IsDeviceName(trimmed)) return refuse(FolderVerdict::kDevicePath);
    names.push_back(trimmed);
  }

  std::wstring canonical = root->root;
  for (const std::wstring_view name : names) {
    canonical += name;
    canonical += L'\\';
  }
  if (const std::optional<FolderVerdict> refused = RefusalOfResult(canonical)) return refuse(*refused);
  if (refusal != nullptr) *refusal = FolderVerdict::kAllowed;
  return canonical;
}

bool IsExactFolderPath(std::wstring_view folder) {
  if (folder.empty() || folder.back() != L'\\' || folder.find(L'/') != std::wstring_view::npos) return false;
  FolderVerdict why = FolderVerdict::kInvalidPath;
  const std::optional<PathRoot> root = SplitRoot(folder, why);
  if (!root || StartsWithAsciiTextIgnoringCase(folder, kLongPrefix)) return false;
  // The root as written must be its canonical form: one backslash between its parts.
  if (folder.size() < root->root.size() ||
      !SameAsciiTextIgnoringCase(folder.substr(0, root->root.size()), root->root)) {
    return false;
  }
  std::wstring_view rest = folder.substr(root->root.size());
  while (!rest.empty()) {
    const size_t end = rest.find(L'\\');
    const std::wstring_view name = rest.substr(0, end);
    if (end == std::wstring_view::npos || name.empty() || name == L"." || name == L".." ||
        HoldsForbiddenCharacter(name) || IsDeviceName(name)) {
      return false;
    }
    rest.remove_prefix(end + 1);
  }
  return true;
}

bool IsVolumeRoot(std::wstring_view canonicalFolder) {
  if (canonicalFolder.size() == 3 && canonicalFolder[1] == L':') return true;
  if (canonicalFolder.substr(0, 2) != L"\\\\") return false;
  // "\\server\share\": exactly four backslashes.
  return std::count(canonicalFolder.begin(), canonicalFolder.end(), L'\\') == 4;
}

}  // namespace lumenor
