// lumenor-demo-seed.exe: fills the current user's registry and folders with a realistic
// set of traces for lumenor-cli to find. Run it only inside the demo Wine prefix.
#include "base/TextEncoding.h"
#include "tests/support/DemoTraces.h"

#include <cstdio>

int wmain() {
  std::vector<std::wstring> failures;
  const std::vector<lumenor::testing::SeededTrace> traces = lumenor::testing::SeedDemoTraces(failures);
  for (const std::wstring& failure : failures) {
    std::fprintf(stderr, "could not seed %s\n", lumenor::ToUtf8(failure).c_str());
  }
  std::fprintf(stderr, "seeded %u traces\n", static_cast<unsigned>(traces.size()));
  return failures.empty() ? 0 : 1;
}
