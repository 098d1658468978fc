#include "controls/Layout.h"

#include "controls/GdiOwners.h"

#include <commctrl.h>

#include <cstring>

namespace lumenor::controls {

namespace {

// The width and height a dialog template gives, in dialog units, from either form of
// template: the extended one opens with version 1 and the signature 0xFFFF.
bool TemplateUnits(int templateId, SIZE& units) {
  HMODULE module = ::GetModuleHandleW(nullptr);
  HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(templateId), RT_DIALOG);
  if (found == nullptr) {
    return false;
  }
  HGLOBAL loaded = ::LoadResource(module, found);
  const auto* bytes = loaded != nullptr ? static_cast<const unsigned char*>(::LockResource(loaded)) : nullptr;
  const DWORD length = ::SizeofResource(module, found);
  if (bytes == nullptr) {
    return false;
  }
  WORD version[2] = {};
  if (length < sizeof version) {
    return false;
  }
  std::memcpy(version, bytes, sizeof version);
  const bool extended = version[0] == 1 && version[1] == 0xFFFF;
  // Extended: version, signature, help id, extended style, style, item count, x, y, cx, cy.
  // Plain: style, extended style, item count, x, y, cx, cy.
  const size_t sizeOffset = extended ? 2 + 2 + 4 + 4 + 4 + 2 + 2 + 2 : 4 + 4 + 2 + 2 + 2;
  short size[2] = {};
  if (length < sizeOffset + sizeof size) {
    return false;
  }
  std::memcpy(size, bytes + sizeOffset, sizeof size);
  units = SIZE{size[0], size[1]};
  return true;
}

}  // namespace

SIZE DialogUnits(HWND dialog, int x, int y) {
  RECT rect{0, 0, x, y};
  if (::MapDialogRect(dialog, &rect) == FALSE) {
    return SIZE{};
  }
  return SIZE{rect.right, rect.bottom};
}

SIZE TemplateSize(HWND dialog, int templateId) {
  SIZE units{};
  if (!TemplateUnits(templateId, units)) {
    return SIZE{};
  }
  return DialogUnits(dialog, units.cx, units.cy);
}

RECT AtCorner(const RECT& area, SIZE size, Corner corner, SIZE inset) {
  const bool right = corner == Corner::kTopRight || corner == Corner::kBottomRight;
  const bool bottom = corner == Corner::kBottomLeft || corner == Corner::kBottomRight;
  const int left = right ? area.right - inset.cx - size.cx : area.left + inset.cx;
  const int top = bottom ? area.bottom - inset.cy - size.cy : area.top + inset.cy;
  return RECT{left, top, left + size.cx, top + size.cy};
}

bool ResizeKeepingCorner(HWND control, SIZE size, Corner corner) {
  RECT rect{};
  if (::GetWindowRect(control, &rect) == FALSE) {
    return false;
  }
  (void)::MapWindowPoints(nullptr, ::GetParent(control), reinterpret_cast<POINT*>(&rect), 2);  // 0 is a valid offset
  const RECT placed = AtCorner(rect, size, corner);
  return ::MoveWindow(control, placed.left, placed.top, size.cx, size.cy, TRUE) != FALSE;
}

int TextPixels(HWND window, int pixelsAt96) {
  const WindowDC dc(window);
  if (!dc) {
    return pixelsAt96;
  }
  const int dotsPerInch = ::GetDeviceCaps(dc.Get(), LOGPIXELSX);
  return dotsPerInch > 0 ? ::MulDiv(pixelsAt96, dotsPerInch, 96) : pixelsAt96;
}

bool FitLastColumn(HWND list, int givenWidth) {
  HWND header = reinterpret_cast<HWND>(::SendMessageW(list, LVM_GETHEADER, 0, 0));
  const int columns = header != nullptr ? static_cast<int>(::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) : -1;
  RECT client{};
  if (columns <= 0 || ::GetClientRect(list, &client) == FALSE) {
    return false;
  }
  int others = 0;
  for (int column = 0; column + 1 < columns; ++column) {
    others += static_cast<int>(::SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
  }
  const int rest = client.right - others;
  const int width = rest > givenWidth ? rest : givenWidth;
  return ::SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(columns - 1), MAKELPARAM(width, 0)) != FALSE;
}

}  // namespace lumenor::controls
