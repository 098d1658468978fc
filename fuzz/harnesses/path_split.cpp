// The shredder's split of a path into folder and name: always at the last backslash, the
// folder canonical, the name one Windows reads as it is written.
#include "engine/CanonicalFolder.h"
#include "engine/FileNames.h"
#include "fuzz/FuzzInput.h"
#include "shred/ShredPath.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumenor::fuzz::Shown;
  const std::wstring input = lumenor::fuzz::WideFromFuzzBytes(data, size);
  lumenor::ShredFailure failure = lumenor::ShredFailure::kNone;
  const std::optional<lumenor::FileInFolder> target = lumenor::SplitFilePathText(input, &failure);
  if (!target) {
    FUZZ_REQUIRE(failure == lumenor::ShredFailure::kBadPath || failure == lumenor::ShredFailure::kAmbiguousName,
                 Shown(input));
    return 0;
  }
  const std::string shown = Shown(input) + " -> " + Shown(target->folder) + " + " + Shown(target->name);
  const size_t slash = input.rfind(L'\\');
  FUZZ_REQUIRE(slash != std::wstring::npos && target->name == input.substr(slash + 1), shown);
  FUZZ_REQUIRE(target->name.find_first_of(L"\\/") == std::wstring::npos, shown);
  FUZZ_REQUIRE(lumenor::IsUnambiguousFileName(target->name), shown);
  FUZZ_REQUIRE(lumenor::CanonicalFolder(input.substr(0, slash + 1)) == target->folder, shown);
  FUZZ_REQUIRE(target->Path().rfind(L'\\') + 1 == target->folder.size(), shown);
  FUZZ_REQUIRE(lumenor::fuzz::FitsInSixteenBits(target->Path()), shown);
  return 0;
}
