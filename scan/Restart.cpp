#include "scan/Restart.h"

#include <windows.h>

namespace lumenor {

void RestartWindowsNow() {
  HANDLE token = nullptr;
  if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token) != FALSE) {
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    if (::LookupPrivilegeValueW(nullptr, SE_SHUTDOWN_NAME, &privileges.Privileges[0].Luid) != FALSE) {
      // Without the privilege the restart below fails on its own; there is nobody to tell.
      (void)::AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr);
    }
    (void)::CloseHandle(token);  // our own handle
  }
  (void)::ExitWindowsEx(EWX_REBOOT | EWX_FORCE, SHTDN_REASON_MAJOR_APPLICATION | SHTDN_REASON_FLAG_PLANNED);
}

}  // namespace lumenor
