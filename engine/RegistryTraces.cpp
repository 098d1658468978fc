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

// Deletes a registry link itself. The usual calls would open, and act on, its target; the
// native call works on the handle of the link.
bool DeleteLinkKey(HKEY parent, const wchar_t* name) {
  using NtDeleteKeyFunction = LONG(WINAPI*)(HANDLE);
  static const auto ntDeleteKey = reinterpret_cast<NtDeleteKeyFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtDeleteKey")));
  const UniqueKey link = OpenKey(parent, name, DELETE | KEY_QUERY_VALUE);
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

// Opens a sub-key of an open key, refusing a registry link, and counts its values. A link
// holds exactly one value, so only such keys need the closer look.
UniqueKey OpenSubKey(HKEY parent, const wchar_t* name, REGSAM access, DWORD& values) {
  UniqueKey child = OpenKey(parent, name, access);
  values = child ? CountValues(child.Get()) : 0;
  if (child && values == 1 && IsLinkKey(child.Get())) {
    child.Reset();
  }
  return child;
}

void ReportValues(const OpenedKey& opened, const StopToken& stop, std::vector<wchar_t>& name,
                  const RegistryTraceFound& found, bool& stopped) {
  for (DWORD index = 0;; ++index) {
    if (stop.StopRequested()) {
      stopped = true;
      return;
    }
    DWORD length = kNameBuffer;
    const LONG result =
        RegEnumValueW(opened.key.Get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (result == ERROR_MORE_DATA) {
      continue;  // a name longer than any buffer: skipped
    }
    if (result != ERROR_SUCCESS) {
      return;
    }
    found(opened.path, std::wstring_view(name.data(), length));
  }
}

}  // namespace

void ScanRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, const StopToken& stop,
                          const RegistryTraceFound& found) {
  UniqueKey key = OpenKey(root, keyPath, KEY_READ);
  if (!key) {
    return;
  }
  if (selector != kWholeKey) {
    const std::wstring valueName(selector);
    if (RegQueryValueExW(key.Get(), valueName.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
      found(keyPath, selector);
    }
    return;
  }
  if (IsLinkKey(key.Get())) {
    return;
  }

  // Depth-first without recursion: one open key per level, one shared name buffer.
  std::vector<wchar_t> name(kNameBuffer);
  std::vector<OpenedKey> stack;
  stack.push_back({std::move(key), std::wstring(keyPath)});
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
        UniqueKey child = OpenSubKey(top.key.Get(), name.data(), KEY_READ, values);
        if (child) {
          std::wstring childPath = top.path + L"\\" + name.data();
          stack.push_back({std::move(child), std::move(childPath)});
        }
      }
      continue;
    }
    ReportValues(top, stop, name, found, stopped);
    stack.pop_back();
  }
}

void EraseRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, EraseTally& tally) {
  UniqueKey key = OpenKey(root, keyPath, KEY_ALL_ACCESS);
  if (!key) {
    return;
  }
  if (selector != kWholeKey) {
    const std::wstring valueName(selector);
    if (RegDeleteValueW(key.Get(), valueName.c_str()) == ERROR_SUCCESS) {
      tally.Erased(1);
    } else {
      tally.EraseFailed(std::wstring(RootPrefixOf(root)) + std::wstring(keyPath) + L"\\" + valueName);
    }
    return;
  }
  if (IsLinkKey(key.Get())) {
    return;
  }

  // Sub-keys are taken from the front, one at a time, and each goes once it is empty; one
  // that cannot go is stepped over so the walk always ends.
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
      continue;
    }
    if (next == NextSubKey::kFound) {
      DWORD childValues = 0;
      UniqueKey child = OpenSubKey(top.key.Get(), name.data(), KEY_ALL_ACCESS, childValues);
      if (!child) {
        // A link goes by itself, its target untouched; anything else that cannot be opened stays.
        if (!DeleteLinkKey(top.key.Get(), name.data())) {
          ++top.nextSubKey;
        }
        continue;
      }
      std::wstring childPath = top.path + L"\\" + name.data();
      stack.push_back({std::move(child), std::move(childPath), 0, childValues});
      continue;
    }

    OpenedKey finished = std::move(stack.back());
    stack.pop_back();
    finished.key.Reset();
    bool deleted = false;
    if (stack.empty()) {
      deleted = RegDeleteKeyExW(root, finished.path.c_str(), kRegistryView, 0) == ERROR_SUCCESS;
      topKeyDeleted = deleted;
    } else {
      const std::wstring ownName = finished.path.substr(finished.path.find_last_of(L'\\') + 1);
      deleted = RegDeleteKeyW(stack.back().key.Get(), ownName.c_str()) == ERROR_SUCCESS;
      if (!deleted) {
        ++stack.back().nextSubKey;
      }
    }
    if (deleted) {
      valuesDeleted += static_cast<int>(finished.values);
    }
  }
  if (valuesDeleted > 0) {
    tally.Erased(valuesDeleted);
  } else if (topKeyDeleted) {
    tally.Erased(1);
  }
}

}  // namespace lumenor
