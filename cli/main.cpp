// Entry point of lumenor-cli.exe, the console companion of lumenor.exe. It works on the
// same catalogue and reads the "setting.ini" beside its own executable (never writes it).
#include "base/ModulePath.h"
#include "catalogue/Catalogue.h"
#include "cli/CliOptions.h"
#include "cli/ConsoleOutput.h"
#include "cli/ConsoleStop.h"
#include "cli/JunkCommand.h"
#include "cli/ListCommand.h"
#include "cli/RulesCheckCommand.h"
#include "cli/RulesCommand.h"
#include "cli/ShredCommand.h"
#include "cli/TraceCommand.h"
#include "cli/UpdateCommand.h"
#include "engine/RuleLoading.h"
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
    L"  list [--json]                 print the privacy catalogue: id, level (0 category,\n"
    L"                                1 application, 2 item) and name of every node, the\n"
    L"                                rule items found on this machine after the fixed ones\n"
    L"  scan [SELECTION] [--json]     print every trace the selected items find\n"
    L"  erase [SELECTION] [--json]    scan, then erase every item that found traces\n"
    L"  update-check [--json]         ask the maker's site whether a newer version exists\n"
    L"  rules update [--url URL] [--json]\n"
    L"                                download the community's winapp2.ini (from URL, or\n"
    L"                                the address in setting.ini) and put it beside the\n"
    L"                                program if it arrived whole and holds rules\n"
    L"  rules check FILE [--json]     read a rule file as the program would and print every\n"
    L"                                problem with its line and column\n"
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
    L"  --one-click         the one-click list   --all        every fixed and built-in item\n"
    L"  --community         every community rule found on this machine (the user's own rule\n"
    L"                      items and the community's are taken only when named or with it)\n"
    L"Exit status: 0 done, 1 a deletion failed, a file was not shredded, the old rules were\n"
    L"kept or a rule file has problems, 2 usage error (for shred also a relative path or a\n"
    L"protected folder; nothing is touched then; for rules check also a file that cannot be\n"
    L"read as rules), 130 stopped by Ctrl+C, Ctrl+Break or the console closing (the summary\n"
    L"so far is printed).\n";

int UsageError(std::wstring_view problem) {
  const lumenor::ConsoleOutput err = lumenor::ConsoleOutput::StandardError();
  (void)err.WriteLine(L"lumenor-cli: " + std::wstring(problem));  // nothing more to do if stderr is gone
  (void)err.Write(kUsage);
  return kUsageError;
}

// The catalogue with the rules beside the program, as lumenor.exe builds it. Problems of
// the built-in and the user's rule files are told on standard error; those of the
// community file are for "rules check" to tell.
lumenor::CCatalogue LoadCatalogue() {
  lumenor::LoadedRules loaded = lumenor::LoadRules(lumenor::ModuleFolder());
  const lumenor::ConsoleOutput err = lumenor::ConsoleOutput::StandardError();
  for (const lumenor::rules::Problem& problem : loaded.problems) {
    // A warning that cannot be written changes nothing the command does.
    (void)err.WriteLine(L"warning: " + problem.where.file + L":" + std::to_wstring(problem.where.line) + L":" +
                        std::to_wstring(problem.where.column) + L": " + problem.message);
  }
  return lumenor::CatalogueWithRules(loaded, lumenor::MachinePaths());
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
  if (command == L"rules") {
    // Sub-commands, each with its own arguments.
    if (arguments.empty()) {
      return UsageError(L"rules: no sub-command given");
    }
    const std::vector<std::wstring> rest(arguments.begin() + 1, arguments.end());
    if (arguments.front() == L"update") {
      std::wstring problem;
      const auto options = lumenor::ParseRulesUpdateOptions(rest, problem);
      if (!options) {
        return UsageError(problem);
      }
      return lumenor::RunRulesUpdate(*options, out);
    }
    if (arguments.front() == L"check") {
      std::wstring problem;
      const auto options = lumenor::ParseRulesCheckOptions(rest, problem);
      if (!options) {
        return UsageError(problem);
      }
      return lumenor::RunRulesCheck(*options, out, lumenor::ConsoleOutput::StandardError());
    }
    return UsageError(L"rules: unknown sub-command: " + arguments.front());
  }
  if (command == L"list") {
    const bool json = arguments.size() == 1 && arguments.front() == L"--json";
    if (!arguments.empty() && !json) {
      return UsageError(L"unexpected argument: " + arguments.front());
    }
    const lumenor::CCatalogue catalogue = LoadCatalogue();
    return lumenor::RunListCommand(catalogue, json, out);
  }
  if (command == L"scan" || command == L"erase") {
    std::wstring problem;
    const auto options = lumenor::ParseTraceCommandOptions(arguments, problem);
    if (!options) {
      return UsageError(problem);
    }
    const lumenor::CCatalogue catalogue = LoadCatalogue();
    const lumenor::TraceCommand which =
        command == L"scan" ? lumenor::TraceCommand::kScan : lumenor::TraceCommand::kErase;
    return RunStoppable([&](const lumenor::StopToken& stop) {
      return lumenor::RunTraceCommand(which, *options, catalogue, out, lumenor::ConsoleOutput::StandardError(), stop);
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
