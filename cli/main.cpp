// Entry point of lumenor-cli.exe, the console companion of lumenor.exe. It works on the
// same catalogue and reads the "setting.ini" beside its own executable.
#include "catalogue/Catalogue.h"
#include "cli/ConsoleOutput.h"
#include "cli/ListCommand.h"

#include <string>
#include <string_view>

namespace {

constexpr int kUsageError = 2;

constexpr wchar_t kUsage[] =
    L"usage: lumenor-cli <command>\n"
    L"commands:\n"
    L"  list    print the privacy catalogue: id, level (0 category, 1 application, 2 item)\n"
    L"          and name of every node, separated by tabs, in catalogue order\n";

int UsageError(std::wstring_view problem) {
  const lumenor::ConsoleOutput err = lumenor::ConsoleOutput::StandardError();
  (void)err.WriteLine(std::wstring(L"lumenor-cli: ") + std::wstring(problem));
  (void)err.Write(kUsage);
  return kUsageError;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) {
    return UsageError(L"no command given");
  }
  const std::wstring_view command = argv[1];
  if (command == L"--help" || command == L"-h" || command == L"help") {
    return lumenor::ConsoleOutput::StandardOutput().Write(kUsage) ? 0 : 1;
  }
  if (command == L"list") {
    if (argc > 2) {
      return UsageError(std::wstring(L"unexpected argument: ") + argv[2]);
    }
    lumenor::CCatalogue catalogue = lumenor::CCatalogue::Build();
    return lumenor::RunListCommand(catalogue.Root(), lumenor::ConsoleOutput::StandardOutput());
  }
  return UsageError(std::wstring(L"unknown command: ") + std::wstring(command));
}
