// Messages the main window answers besides the system's own. The pages' tab strips, the
// tests and the screenshot driver send them by these names.
#pragma once

#include <windows.h>

namespace lumenor {

// From the notification icon: first parameter the icon's id, second the mouse message.
inline constexpr UINT kTrayCallbackMessage = WM_USER + 5;
inline constexpr UINT kTrayIconId = 128;
// Shows a page: second parameter the page's index (what a tab strip posts).
inline constexpr UINT kShowPageMessage = WM_USER + 100;
// Shows the shredder page.
inline constexpr UINT kShowShredderMessage = WM_USER + 101;
// Posted to itself at start: the rest of start-up, once the frame is up.
inline constexpr UINT kFinishStartUpMessage = WM_USER + 102;

}  // namespace lumenor
