#include "engine/RegistryTraces.h"

#include "catalogue/LocationRecord.h"
#include "engine/Registry.h"

#include <string>
#include <vector>

namespace lumenor {

namespace {

// Longest value name the registry allows, plus its terminator; key names are shorter.
constexpr DWORD kNameBuffer = 16384;

struct OpenedKey {
  UniqueKey key;
  std::wstring path;
  DWORD nextSubKey = 0;  // scan: next index to read; erase: sub-keys that could not go
  DWORD values = 0;
};

enum class NextSubKey { kFound, kSkip, kNone };

NextSubKey ReadSubKeyName(HKEY key, DWORD index, std::vector<wchar_t>& name) {
  DWORD length = kNameBuffer;
  const LONG result = RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
  if (result == ERROR_SUCCESS) {
    return NextSubKey::kFound;
  }
  return result == ERROR_MORE_DATA ? NextSubKey::kSkip : NextSubKey::kNone;
}

// What an erase asks of a key: to walk it, count its values and delete it; no more.
constexpr REGSAM kEraseAccess = KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | DELETE;

// Deletes a registry link itself. The usual calls would open, and act on, its target; the
// native call works on the handle of the link.
bool DeleteLinkKey(HKEY parent, const wchar_t* name, REGSAM view) {
  using NtDeleteKeyFunction = LONG(WINAPI*)(HANDLE);
  static const auto ntDeleteKey = reinterpret_cast<NtDeleteKeyFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtDeleteKey")));
  const UniqueKey link = OpenKey(parent, name, DELETE | KEY_QUERY_VALUE, nullptr, view);
  return ntDeleteKey != nullptr && link && IsLinkKey(link.Get()) && ntDeleteKey(link.Get()) == 0;
}

DWORD CountValues(HKEY key) {
  DWORD values = 0;
  if (RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                       nullptr) != ERROR_SUCCESS) {
    return 0;
  }
  return values;
}

enum class SubKeyOpening { kOpened, kLink, kMissing, kRefused };

// Opens a sub-key of an open key, refusing a registry link, and counts its values. A link
// holds exactly one value, so only such keys need the closer look.
SubKeyOpening OpenSubKey(HKEY parent, const wchar_t* name, REGSAM access, REGSAM view, UniqueKey& child,
                         DWORD& values) {
  LONG result = ERROR_SUCCESS;
  child = OpenKey(parent, name, access, &result, view);
  values = child ? CountValues(child.Get()) : 0;
  if (child && values == 1 && IsLinkKey(child.Get())) {
    child.Reset();
    return SubKeyOpening::kLink;
  }
  if (child) {
    return SubKeyOpening::kOpened;
  }
  return result == ERROR_FILE_NOT_FOUND ? SubKeyOpening::kMissing : SubKeyOpening::kRefused;
}

void ReportValues(const OpenedKey& opened, const StopToken& stop, std::vector<wchar_t>& name,
                  const RegistryTraceFound& found, bool& stopped) {
  for (DWORD index = 0;; ++index) {
    if (stop.StopRequested()) {
      stopped = true;
      return;
    }
    DWORD length = kNameBuffer;
    DWORD dataBytes = 0;
    const LONG result =
        RegEnumValueW(opened.key.Get(), index, name.data(), &length, nullptr, nullptr, nullptr, &dataBytes);
    if (result == ERROR_MORE_DATA) {
      continue;  // a name longer than any buffer: skipped
    }
    if (result != ERROR_SUCCESS) {
      return;
    }
    found(opened.path, std::wstring_view(name.data(), length), dataBytes);
  }
}

}  // namespace

void ScanRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, const StopToken& stop,
                          const RegistryTraceFound& found, REGSAM view) {
  UniqueKey key = OpenKey(root, keyPath, KEY_READ, nullptr, view);
  if (!key) {
    return;
  }
  if (selector != kWholeKey) {
    const std::wstring valueName(selector);
    DWORD dataBytes = 0;
    if (RegQueryValueExW(key.Get(), valueName.c_str(), nullptr, nullptr, nullptr, &dataBytes) == ERROR_SUCCESS) {
      found(keyPath, selector, dataBytes);
    }
    return;
  }
  if (IsLinkKey(key.Get())) {
    return;
  }

  // Depth-first without recursion: one open key per level, one shared name buffer.
  std::vector<wchar_t> name(kNameBuffer);
  std::vector<OpenedKey> stack;
  stack.push_back({std::move(key), std::wstring(keyPath), 0, 0});
  bool stopped = false;
  while (!stack.empty() && !stopped) {
    OpenedKey& top = stack.back();
    if (stop.StopRequested()) {
      return;
    }
    const NextSubKey next = ReadSubKeyName(top.key.Get(), top.nextSubKey, name);
    if (next != NextSubKey::kNone) {
      ++top.nextSubKey;
      if (next == NextSubKey::kFound) {
        DWORD values = 0;
        UniqueKey child;
        if (OpenSubKey(top.key.Get(), name.data(), KEY_READ, view, child, values) == SubKeyOpening::kOpened) {
          std::wstring childPath = top.path + L"\\" + name.data();
          stack.push_back({std::move(child), std::move(childPath), 0, 0});
        }
      }
      continue;
    }
    ReportValues(top, stop, name, found, stopped);
    stack.pop_back();
  }
}

void EraseRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, EraseTally& tally,
                           REGSAM view) {
  const std::wstring where = std::wstring(RootPrefixOf(root)) + std::wstring(keyPath);
  LONG opened = ERROR_SUCCESS;
  if (selector != kWholeKey) {
    const UniqueKey key = OpenKey(root, keyPath, KEY_SET_VALUE | KEY_QUERY_VALUE, &opened, view);
    if (opened == ERROR_FILE_NOT_FOUND) {
      return;  // nothing there to erase
    }
    const std::wstring valueName(selector);
    DWORD dataBytes = 0;
    const bool sized =
        key && RegQueryValueExW(key.Get(), valueName.c_str(), nullptr, nullptr, nullptr, &dataBytes) == ERROR_SUCCESS;
    if (key && RegDeleteValueW(key.Get(), valueName.c_str()) == ERROR_SUCCESS) {
      tally.Erased(1, sized ? dataBytes : 0);
    } else {
      tally.EraseFailed(where + L"\\" + valueName);
    }
    return;
  }
  UniqueKey key = OpenKey(root, keyPath, kEraseAccess, &opened, view);
  if (opened == ERROR_FILE_NOT_FOUND) {
    return;
  }
  if (!key) {
    tally.EraseFailed(where);
    return;
  }
  if (IsLinkKey(key.Get())) {
    // The location is itself a link: it goes as a link, what it points to stays.
    key.Reset();
    const size_t lastSlash = keyPath.find_last_of(L'\\');
    const std::wstring parentPath(lastSlash == std::wstring_view::npos ? std::wstring_view()
                                                                       : keyPath.substr(0, lastSlash));
    const std::wstring ownName(lastSlash == std::wstring_view::npos ? keyPath : keyPath.substr(lastSlash + 1));
    const UniqueKey parent = OpenKey(root, parentPath, KEY_QUERY_VALUE, nullptr, view);
    if (parent && DeleteLinkKey(parent.Get(), ownName.c_str(), view)) {
      tally.Erased(1, 0);
    } else {
      tally.EraseFailed(where);
    }
    return;
  }

  // Sub-keys are taken from the front, one at a time, and each goes once it is empty; one
  // that cannot go is counted as failed and stepped over, so the walk always ends.
  std::vector<wchar_t> name(kNameBuffer);
  std::vector<OpenedKey> stack;
  const DWORD topValues = CountValues(key.Get());
  stack.push_back({std::move(key), std::wstring(keyPath), 0, topValues});
  int valuesDeleted = 0;
  bool topKeyDeleted = false;
  while (!stack.empty()) {
    OpenedKey& top = stack.back();
    const NextSubKey next = ReadSubKeyName(top.key.Get(), top.nextSubKey, name);
    if (next == NextSubKey::kSkip) {
      ++top.nextSubKey;
      tally.EraseFailed(std::wstring(RootPrefixOf(root)) + top.path + L"\\...");  // a name no buffer holds
      continue;
    }
    if (next == NextSubKey::kFound) {
      DWORD childValues = 0;
      UniqueKey child;
      const SubKeyOpening opening = OpenSubKey(top.key.Get(), name.data(), kEraseAccess, view, child, childValues);
      const std::wstring childPath = top.path + L"\\" + name.data();
      switch (opening) {
        case SubKeyOpening::kOpened:
          stack.push_back({std::move(child), childPath, 0, childValues});
          break;
        case SubKeyOpening::kLink:
          // A link goes by itself, its target untouched.
          if (!DeleteLinkKey(top.key.Get(), name.data(), view)) {
            ++top.nextSubKey;
            tally.EraseFailed(std::wstring(RootPrefixOf(root)) + childPath);
          }
          break;
        case SubKeyOpening::kMissing:
          ++top.nextSubKey;  // gone meanwhile; stepping on keeps the walk finite whatever the registry does
          break;
        case SubKeyOpening::kRefused:
          ++top.nextSubKey;
          tally.EraseFailed(std::wstring(RootPrefixOf(root)) + childPath);
          break;
      }
      continue;
    }

    OpenedKey finished = std::move(stack.back());
    stack.pop_back();
    finished.key.Reset();
    bool deleted = false;
    if (stack.empty()) {
      deleted = RegDeleteKeyExW(root, finished.path.c_str(), view, 0) == ERROR_SUCCESS;
    } else {
      // By name from the parent's open handle: the registry need not walk the path again.
      const std::wstring ownName = finished.path.substr(finished.path.find_last_of(L'\\') + 1);
      deleted = RegDeleteKeyExW(stack.back().key.Get(), ownName.c_str(), view, 0) == ERROR_SUCCESS;
    }
    if (stack.empty()) {
      topKeyDeleted = deleted;
    } else if (!deleted) {
      ++stack.back().nextSubKey;
    }
    if (deleted) {
      valuesDeleted += static_cast<int>(finished.values);
    } else {
      tally.EraseFailed(std::wstring(RootPrefixOf(root)) + finished.path);
    }
  }
  // Weighing every value as it goes would double the walk's calls; the caller knows what
  // the scan found in the key.
  if (valuesDeleted > 0) {
    tally.Erased(valuesDeleted, 0);
  } else if (topKeyDeleted) {
    tally.Erased(1, 0);
  }
}

}  // namespace lumenor
