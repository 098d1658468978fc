// Hyperlink static: underlined text in the accent colour with a hand cursor; a click
// opens its address through the opener the owner gives.
#pragma once

#include "controls/Control.h"
#include "controls/GdiOwners.h"

#include <functional>
#include <string>

namespace lumenor::controls {

class CMyHyperLink : public CControl {
 public:
  using Opener = std::function<void(const std::wstring& address)>;

  CMyHyperLink() = default;

  // Takes over a static of a dialog template; it shows `text` on `background` and opens
  // `address`.
  bool Attach(HWND dialog, int id, const std::wstring& text, const std::wstring& address, COLORREF background,
              Opener opener);
  const std::wstring& Address() const { return address_; }

  bool OnReflected(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  std::wstring address_;
  Opener opener_;
  OwnedFont underlined_;
  OwnedBrush background_;
};

}  // namespace lumenor::controls
