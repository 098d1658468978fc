#include "engine/UrlHistory.h"

#include <objbase.h>
#include <urlhist.h>

namespace lumenor {

namespace {

constexpr CLSID kUrlHistoryClass = {0x3C374A40, 0xBAE4, 0x11CF, {0xBF, 0x7D, 0x00, 0xAA, 0x00, 0x69, 0x46, 0xEE}};
constexpr IID kUrlHistoryStg2 = {0xAFA0DC11, 0xC313, 0x11D0, {0x83, 0x1A, 0x00, 0xC0, 0x4F, 0xD5, 0xAE, 0x38}};

}  // namespace

void ClearUrlHistoryStore() {
  const HRESULT initialised = CoInitialize(nullptr);
  IUrlHistoryStg2* history = nullptr;
  if (SUCCEEDED(CoCreateInstance(kUrlHistoryClass, nullptr, CLSCTX_INPROC_SERVER, kUrlHistoryStg2,
                                 reinterpret_cast<void**>(&history))) &&
      history != nullptr) {
    (void)history->ClearHistory();  // an old store that cannot be cleared changes nothing we can fix
    history->Release();
  }
  if (SUCCEEDED(initialised)) {
    CoUninitialize();
  }
}

}  // namespace lumenor
