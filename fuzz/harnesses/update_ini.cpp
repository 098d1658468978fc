// Reading "update.ini" as downloaded: any bytes at all. The value found is one line of
// the text, without the blanks around it; without one, the default comes back.
#include "base/TextEncoding.h"
#include "fuzz/FuzzInput.h"
#include "update/UpdateDescription.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumenor::fuzz::Shown;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  constexpr std::wstring_view kFallback = L"\n";  // a value no line can hold
  const std::wstring value = lumenor::IniValue(text, L"Program", L"Version", kFallback);
  if (value == kFallback) return 0;
  const std::wstring wide = lumenor::FromUtf8(text);
  FUZZ_REQUIRE(value.find(L'\n') == std::wstring::npos, Shown(value));
  FUZZ_REQUIRE(wide.find(value) != std::wstring::npos, Shown(value));
  const auto blank = [](wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); };
  FUZZ_REQUIRE(value.empty() || (!blank(value.front()) && !blank(value.back())), Shown(value));
  FUZZ_REQUIRE(lumenor::fuzz::FitsInSixteenBits(value), Shown(value));
  // What a version check then does with it.
  (void)lumenor::CompareVersions(value, L"3.1");
  return 0;
}
