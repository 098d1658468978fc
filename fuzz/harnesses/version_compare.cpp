// Version comparison: two lines, two versions. The answer is one of four, the reverse
// question gets the reverse answer, and a well-formed version equals itself.
#include "fuzz/FuzzInput.h"
#include "update/UpdateDescription.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumenor::fuzz::Shown;
  const std::vector<std::wstring> lines = lumenor::fuzz::Lines(lumenor::fuzz::WideFromFuzzBytes(data, size));
  const std::wstring& a = lines[0];
  const std::wstring b = lines.size() > 1 ? lines[1] : std::wstring(L"3.1");
  const std::string shown = Shown(a) + " " + Shown(b);
  constexpr int kMalformed = -21;
  const int forward = lumenor::CompareVersions(a, b);
  const int backward = lumenor::CompareVersions(b, a);
  FUZZ_REQUIRE(forward == kMalformed || forward == -1 || forward == 0 || forward == 1, shown);
  FUZZ_REQUIRE(forward == kMalformed ? backward == kMalformed : backward == -forward, shown);
  if (forward != kMalformed) {
    FUZZ_REQUIRE(lumenor::CompareVersions(a, a) == 0 && lumenor::CompareVersions(b, b) == 0, shown);
    // Missing places are zeros.
    if (std::count(a.begin(), a.end(), L'.') < 3) FUZZ_REQUIRE(lumenor::CompareVersions(a + L".0", a) == 0, shown);
  }
  return 0;
}
