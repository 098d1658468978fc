// Entry point of lumenor-cli.exe, the console companion of lumenor.exe. It works on the
// same catalogue and reads the "setting.ini" beside its own executable (never writes it).
#include "catalogue/Catalogue.h"
#include "cli/CliOptions.h"
#include "cli/ConsoleOutput.h"
#include "cli/ConsoleStop.h"
#include "cli/JunkCommand.h"
#include "cli/ListCommand.h"
#include "cli/ShredCommand.h"
#include "cli/TraceCommand.h"
#include "cli/UpdateCommand.h"
#include "res/version.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kUsageError = 2;

constexpr wchar_t kUsage[] =
    L"usage: lumenor-cli <command> [options]\n"
    L"commands:\n"
    L"  list                          print the privacy catalogue: id, level (0 category,\n"
    L"                                1 application, 2 item) and name of every node\n"
    L"  scan [SELECTION] [--json]     print every trace the selected items find\n"
    L"  erase [SELECTION] [--json]    scan, then erase every item that found traces\n"
    L"  update-check [--json]         ask the maker's site whether a newer version exists\n"
    L"  --version                     print the program's version\n"
    L"  shred [--method quick|safe|thorough] [--json] PATH...\n"
    L"                                overwrite (1, 3 or 7 passes; quick by default) and\n"
    L"                                delete each file, and every file below each folder\n"
    L"  junk [--folder PATH] [--masks default|all|MASK,MASK,...] [--delete] [--json]\n"
    L"                                print every junk file on the fixed disks (or below\n"
    L"                                PATH, an absolute folder) whose name a mask of the\n"
    L"                                junk catalogue accepts; --delete removes them\n"
    L"SELECTION (default --recent):\n"
    L"  --items ID,ID,...   these items          --default    the default scan list\n"
    L"  --recent            the last scan's list (the default list if none was saved)\n"
    L"  --one-click         the one-click list   --all        every item\n"
    L"Exit status: 0 done, 1 a deletion failed or a file was not shredded, 2 usage error\n"
    L"(for shred also a relative path or a protected folder; nothing is touched then),\n"
    L"130 stopped by Ctrl+C, Ctrl+Break or the console closing (the summary so far is printed).\n";

int UsageError(std::wstring_view problem) {
  const lumenor::ConsoleOutput err = lumenor::ConsoleOutput::StandardError();
  (void)err.WriteLine(L"lumenor-cli: " + std::wstring(problem));  // nothing more to do if stderr is gone
  (void)err.Write(kUsage);
  return kUsageError;
}

// Runs a command that Ctrl+C, Ctrl+Break and the console closing stop between entries.
int RunStoppable(const std::function<int(const lumenor::StopToken&)>& command) {
  const lumenor::ConsoleStop stop;
  const int status = command(stop.Token());
  return stop.Requested() ? lumenor::kStoppedExitStatus : status;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) {
    return UsageError(L"no command given");
  }
  const std::wstring command = argv[1];
  const std::vector<std::wstring> arguments(argv + 2, argv + argc);
  const lumenor::ConsoleOutput out = lumenor::ConsoleOutput::StandardOutput();
  if (command == L"--help" || command == L"-h" || command == L"help") {
    return out.Write(kUsage) ? 0 : 1;
  }
  if (command == L"--version") {
    return out.WriteLine(L"lumenor-cli " LUMENOR_VERSION_TEXT_W) ? 0 : 1;
  }
  if (command == L"update-check") {
    std::wstring problem;
    const auto options = lumenor::ParseUpdateCheckOptions(arguments, problem);
    if (!options) {
      return UsageError(problem);
    }
    return lumenor::RunUpdateCheck(options->json, out);
  }
  if (command == L"list") {
    if (!arguments.empty()) {
      return UsageError(L"unexpected argument: " + arguments.front());
    }
    lumenor::CCatalogue catalogue = lumenor::CCatalogue::Build();
    return lumenor::RunListCommand(catalogue.Root(), out);
  }
  if (command == L"scan" || command == L"erase") {
    std::wstring problem;
    const auto options = lumenor::ParseTraceCommandOptions(arguments, problem);
    if (!options) {
      return UsageError(problem);
    }
    lumenor::CCatalogue catalogue = lumenor::CCatalogue::Build();
    const lumenor::TraceCommand which =
        command == L"scan" ? lumenor::TraceCommand::kScan : lumenor::TraceCommand::kErase;
    return RunStoppable([&](const lumenor::StopToken& stop) {
      return lumenor::RunTraceCommand(which, *options, catalogue.Root(), out, lumenor::ConsoleOutput::StandardError(),
                                      stop);
    });
  }
  if (command == L"shred") {
    std::wstring problem;
    const auto options = lumenor::ParseShredCommandOptions(arguments, problem);
    if (!options) {
      return UsageError(problem);
    }
    return RunStoppable([&](const lumenor::StopToken& stop) {
      return lumenor::RunShredCommand(*options, out, lumenor::ConsoleOutput::StandardError(), UsageError, stop);
    });
  }
  if (command == L"junk") {
    std::wstring problem;
    const auto options = lumenor::ParseJunkCommandOptions(arguments, problem);
    if (!options) {
      return UsageError(problem);
    }
    return RunStoppable([&](const lumenor::StopToken& stop) {
      return lumenor::RunJunkCommand(*options, lumenor::MachinePaths(), out, lumenor::ConsoleOutput::StandardError(),
                                     stop);
    });
  }
  return UsageError(L"unknown command: " + command);
}
