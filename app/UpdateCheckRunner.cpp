#include "app/UpdateCheckRunner.h"

#include "base/ResourceString.h"
#include "base/Texts.h"
#include "res/resource.h"

#include <memory>
#include <string>
#include <utility>

namespace lumenor {

namespace {

// The message for an up-to-date program names the product.
std::wstring UpToDateText() {
  return FillIn(LoadResourceString(IDS_UPDATE_NONE), {LoadResourceString(IDS_PRODUCT_NAME)});
}

}  // namespace

UpdateCheckRunner::UpdateCheckRunner(PageOpener opener) : opener_(std::move(opener)) {}

void UpdateCheckRunner::Bind(HWND owner) {
  owner_ = owner;
  results_->Bind(owner);
}

bool UpdateCheckRunner::HandleMessage(UINT message, LRESULT& result) {
  return results_->HandleMessage(message, result);
}

bool UpdateCheckRunner::Start(Mode mode) {
  if (worker_.Running()) {
    interactive_ = interactive_ || mode == Mode::kInteractive;
    return false;
  }
  interactive_ = mode == Mode::kInteractive;
  // The thread holds nothing of this object: only the findings, shared with the end.
  const auto findings = std::make_shared<CAutoUpdater::Findings>();
  return worker_.Start(
      [findings, folder = MakerPage(L"/download/")](const StopToken&) {
        CAutoUpdater updater;
        *findings = updater.Look(folder);  // gives up by its own time-outs, not on a stop
      },
      [this, findings](controls::RunEnd end) {
        if (end == controls::RunEnd::kFinished) {
          Finish(*findings);
        } else {
          NotStarted();  // the next click may try again
        }
      });
}

void UpdateCheckRunner::NotStarted() {
  if (interactive_) {
    (void)messageBox_(owner_, LoadResourceString(IDS_TASK_NOT_STARTED), LoadResourceString(IDS_PRODUCT_NAME),
                      MB_OK | MB_ICONWARNING);
  }
}

void UpdateCheckRunner::Finish(const CAutoUpdater::Findings& findings) {
  const std::wstring product = LoadResourceString(IDS_PRODUCT_NAME);
  switch (findings.result) {
    case kUpdateAccepted:  // newer: the user decides
      if (messageBox_(owner_, LoadResourceString(IDS_UPDATE_AVAILABLE), product, MB_OKCANCEL | MB_ICONQUESTION) ==
          IDOK) {
        opener_(MakerHomePage(), SW_SHOW);
      }
      break;
    case kUpdateNoConnection:
    case kUpdateUnreachable:
      if (interactive_) {
        (void)messageBox_(owner_, LoadResourceString(IDS_UPDATE_CONNECTION_FAILED), product, MB_OK | MB_ICONWARNING);
      }
      break;
    case kUpdateCurrent:
      if (interactive_) {
        (void)messageBox_(owner_, UpToDateText(), product, MB_OK | MB_ICONINFORMATION);
      }
      break;
    default:
      break;  // no version of its own to compare: nothing to say
  }
}

}  // namespace lumenor
