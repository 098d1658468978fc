#include "tests/support/DestructiveTests.h"

#include <windows.h>

namespace lumenor::testing {

bool RunningUnderWine() {
  const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

bool DestructiveTestsAllowed() {
  if (RunningUnderWine()) return true;
  wchar_t value[8] = {};
  const DWORD length = GetEnvironmentVariableW(L"LUMENOR_DESTRUCTIVE_TESTS", value, 8);
  return length == 1 && value[0] == L'1';
}

}  // namespace lumenor::testing
