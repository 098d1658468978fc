// The folder canonicaliser: whatever it accepts is absolute, in its own canonical form,
// free of steps and device names, outside the device namespace, and read the same in
// every other spelling.
#include "engine/CanonicalFolder.h"
#include "fuzz/FuzzInput.h"

#include <array>

namespace {

using lumenor::fuzz::Shown;

// Written apart from the product's own test on purpose: what the system reads as a
// device, whatever follows the name.
bool NamesDevice(std::wstring_view name) {
  std::wstring stem;
  for (const wchar_t c : name.substr(0, name.find(L'.'))) {
    stem += c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c;
  }
  while (!stem.empty() && stem.back() == L' ') stem.pop_back();
  static constexpr std::array<std::wstring_view, 6> kDevices = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
  for (const std::wstring_view device : kDevices) {
    if (stem == device) return true;
  }
  const std::wstring_view ports = L"0123456789\u00B9\u00B2\u00B3";
  return stem.size() == 4 && (stem.starts_with(L"COM") || stem.starts_with(L"LPT")) &&
         ports.find(stem[3]) != std::wstring_view::npos;
}

void CheckAccepted(const std::wstring& input, const std::wstring& folder) {
  const std::string shown = Shown(input) + " -> " + Shown(folder);
  FUZZ_REQUIRE(lumenor::fuzz::FitsInSixteenBits(folder), shown);
  FUZZ_REQUIRE(folder.ends_with(L'\\'), shown);
  FUZZ_REQUIRE(folder.find(L'/') == std::wstring::npos, shown);
  FUZZ_REQUIRE(folder.find(L"\\.\\") == std::wstring::npos && folder.find(L"\\..\\") == std::wstring::npos, shown);
  FUZZ_REQUIRE(!folder.starts_with(L"\\\\.\\") && !folder.starts_with(L"\\\\?\\"), shown);

  const bool onDrive =
      folder.size() >= 3 && folder[0] >= L'A' && folder[0] <= L'Z' && folder[1] == L':' && folder[2] == L'\\';
  const bool onShare = folder.starts_with(L"\\\\") && folder.size() > 2 && folder[2] != L'\\';
  FUZZ_REQUIRE(onDrive || onShare, shown);

  // Every name, the server and share included: never empty, a step or a device.
  std::wstring_view rest = std::wstring_view(folder).substr(onDrive ? 3 : 2);
  size_t names = 0;
  while (!rest.empty()) {
    const size_t end = rest.find(L'\\');
    const std::wstring_view name = rest.substr(0, end);
    FUZZ_REQUIRE(!name.empty() && name != L"." && name != L"..", shown);
    FUZZ_REQUIRE(!NamesDevice(name), shown + " names a device: " + Shown(name));
    ++names;
    rest.remove_prefix(end + 1);
  }
  FUZZ_REQUIRE(onDrive || names >= 2, shown);
  FUZZ_REQUIRE(lumenor::IsVolumeRoot(folder) == (onDrive ? names == 0 : names == 2), shown);
  FUZZ_REQUIRE(lumenor::IsExactFolderPath(folder), shown);

  // Idempotent, and the same for other spellings of the same folder.
  const std::wstring longForm = onDrive ? L"\\\\?\\" + folder : L"\\\\?\\UNC\\" + folder.substr(2);
  std::wstring slashes = folder;
  for (wchar_t& c : slashes) c = c == L'\\' ? L'/' : c;
  for (const std::wstring& spelling : {folder, longForm, slashes, folder + L".\\x\\..\\", folder + L"\\"}) {
    lumenor::FolderVerdict verdict = lumenor::FolderVerdict::kInvalidPath;
    const std::optional<std::wstring> again = lumenor::CanonicalFolder(spelling, &verdict);
    FUZZ_REQUIRE(again && *again == folder && verdict == lumenor::FolderVerdict::kAllowed,
                 shown + " but " + Shown(spelling) + " -> " + (again ? Shown(*again) : "refused"));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::wstring input = lumenor::fuzz::WideFromFuzzBytes(data, size);
  lumenor::FolderVerdict verdict = lumenor::FolderVerdict::kAllowed;
  const std::optional<std::wstring> folder = lumenor::CanonicalFolder(input, &verdict);
  if (!folder) {
    FUZZ_REQUIRE(verdict != lumenor::FolderVerdict::kAllowed, Shown(input));
    return 0;
  }
  FUZZ_REQUIRE(verdict == lumenor::FolderVerdict::kAllowed, Shown(input));
  CheckAccepted(input, *folder);
  return 0;
}
