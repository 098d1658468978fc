// The one layout rule that every page, dialog and the main window's frame follow, so that
// they fit at any screen resolution and with any dialog font:
//  - A page or dialog is as large as its template: dialog units mapped to pixels for its
//    own font (TemplateSize). No code assumes how many pixels a dialog unit is.
//  - A window that holds pages makes room for the largest of them and puts its own bands
//    (caption, tabs, footer) around that room.
//  - A control of a template keeps its place and size from the template, except that a
//    control showing a picture takes the picture's size in pixels, keeping the corner of
//    its template rectangle that faces the nearest page edges (ResizeKeepingCorner).
//  - A control placed by code is placed against its page's client rectangle or against a
//    neighbouring control (AtCorner, and plain arithmetic on their rectangles); gaps not
//    given in pixels by a picture's design are dialog units (DialogUnits).
//  - List columns hold text, so their widths, given in pixels for the usual 96 dots per
//    inch, grow with the screen's resolution (TextPixels). A list's last column takes
//    the width its list has left (FitLastColumn), so a list never shows an empty column
//    beyond its own.
// The layout test checks the outcome on every page at 96 and at 144 dots per inch.
#pragma once

#include <windows.h>

namespace lumenor::controls {

enum class Corner { kTopLeft, kTopRight, kBottomLeft, kBottomRight };

// `x` by `y` dialog units of `dialog` in pixels; zero when they cannot be mapped.
SIZE DialogUnits(HWND dialog, int x, int y);

// The size in pixels that template `templateId` gives `dialog`, for the dialog's font
// (MapDialogRect of the template's width and height); zero when the template is missing.
SIZE TemplateSize(HWND dialog, int templateId);

// A rectangle of `size` whose `corner` lies at that corner of `area`, `inset` pixels in
// from both of the corner's edges.
RECT AtCorner(const RECT& area, SIZE size, Corner corner, SIZE inset = SIZE{});

// Gives a child window `size`, keeping its `corner` where it is.
bool ResizeKeepingCorner(HWND control, SIZE size, Corner corner);

// A width given in pixels for text at 96 dots per inch, at the resolution of `window`'s
// screen.
int TextPixels(HWND window, int pixelsAt96);

// Widens the last column of a report list to the width its list has left, or narrows it
// back, never below `givenWidth`.
bool FitLastColumn(HWND list, int givenWidth);

inline int Width(const RECT& rect) { return rect.right - rect.left; }
inline int Height(const RECT& rect) { return rect.bottom - rect.top; }

}  // namespace lumenor::controls
