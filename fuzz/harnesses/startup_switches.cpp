// lumenor.exe's command line: "-A" anywhere but at the very start, and "-S:" with the
// rest of the line, kept exactly.
#include "app/StartupSwitches.h"
#include "fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumenor::fuzz::Shown;
  const std::wstring line = lumenor::fuzz::WideFromFuzzBytes(data, size);
  const lumenor::StartupSwitches switches = lumenor::ReadStartupSwitches(line);
  const size_t autoAt = line.find(L"-A");
  FUZZ_REQUIRE(switches.autoStarted == (autoAt != std::wstring::npos && autoAt > 0), Shown(line));
  const size_t shredAt = line.find(L"-S:");
  FUZZ_REQUIRE(switches.hasShredPath == (shredAt != std::wstring::npos), Shown(line));
  FUZZ_REQUIRE(switches.hasShredPath
                   ? line.ends_with(switches.shredPath) && switches.shredPath.size() == line.size() - shredAt - 3
                   : switches.shredPath.empty(),
               Shown(line));
  return 0;
}
