#include "app/UpdateCheckRunner.h"

#include "base/ResourceString.h"
#include "res/resource.h"

#include <string>
#include <thread>
#include <utility>

namespace lumenor {

namespace {

// The message for an up-to-date program names the product where the text has "%s".
std::wstring UpToDateText() {
  std::wstring text = LoadResourceString(IDS_UPDATE_NONE);
  const size_t slot = text.find(L"%s");
  if (slot != std::wstring::npos) {
    text.replace(slot, 2, LoadResourceString(IDS_PRODUCT_NAME));
  }
  return text;
}

}  // namespace

UpdateCheckRunner::UpdateCheckRunner(PageOpener opener) : opener_(std::move(opener)) {}

UpdateCheckRunner::~UpdateCheckRunner() { results_->Unbind(); }

void UpdateCheckRunner::Bind(HWND owner) {
  owner_ = owner;
  results_->Bind(owner);
}

bool UpdateCheckRunner::HandleMessage(UINT message, LRESULT& result) { return results_->HandleMessage(message, result); }

bool UpdateCheckRunner::Start(Mode mode) {
  if (running_) {
    interactive_ = interactive_ || mode == Mode::kInteractive;
    return false;
  }
  running_ = true;
  interactive_ = mode == Mode::kInteractive;
  try {
    std::thread([results = results_, folder = MakerPage(L"/download/"), this] {
      CAutoUpdater updater;
      const CAutoUpdater::Findings findings = updater.Look(folder);
      // Runs only while this object is bound to its window, so `this` is still there.
      (void)results->Post([this, findings] { Finish(findings); });  // dropped when the window went
    }).detach();
  } catch (const std::system_error&) {
    running_ = false;  // no thread: no check, and the next click may try again
    return false;
  }
  return true;
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
  running_ = false;
}

}  // namespace lumenor
