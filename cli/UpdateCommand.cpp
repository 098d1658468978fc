#include "cli/UpdateCommand.h"

#include "cli/JsonText.h"
#include "update/AutoUpdater.h"
#include "update/MakerSite.h"

#include <string>

namespace lumenor {

namespace {

std::wstring ResultName(int result) {
  switch (result) {
    case kUpdateAccepted:
      return L"available";
    case kUpdateNoConnection:
      return L"no-connection";
    case kUpdateUnreachable:
      return L"unreachable";
    case kUpdateNoLocalVersion:
      return L"no-version";
    default:
      return L"current";
  }
}

}  // namespace

int RunUpdateCheck(bool json, const ConsoleOutput& out) {
  CAutoUpdater updater;
  const CAutoUpdater::Findings findings = updater.Look(MakerPage(L"/download/"));
  const std::wstring result = ResultName(findings.result);
  const bool written =
      json ? out.WriteLine(L"{\"type\":\"update\",\"local\":" + JsonString(findings.local) + L",\"remote\":" +
                           JsonString(findings.remote) + L",\"result\":" + JsonString(result) + L"}")
           : out.WriteLine(L"local " + (findings.local.empty() ? L"?" : findings.local) + L", remote " +
                           (findings.remote.empty() ? L"?" : findings.remote) + L": " + result);
  const bool connected = findings.result != kUpdateNoConnection && findings.result != kUpdateUnreachable;
  return written && connected ? 0 : 1;
}

}  // namespace lumenor
