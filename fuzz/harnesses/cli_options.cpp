// lumenor-cli's options: one argument a line, read by the options of every command. A
// refusal always names its problem; what is accepted holds only what its command can use.
#include "cli/CliOptions.h"
#include "engine/CanonicalFolder.h"
#include "fuzz/FuzzInput.h"
#include "junk/JunkCatalogue.h"

#include <algorithm>

namespace {

using lumenor::fuzz::Shown;

std::string ShownArguments(const std::vector<std::wstring>& arguments) {
  std::string shown;
  for (const std::wstring& argument : arguments) shown += Shown(argument) + " ";
  return shown;
}

void CheckTraceOptions(const std::vector<std::wstring>& arguments) {
  std::wstring problem;
  const auto options = lumenor::ParseTraceCommandOptions(arguments, problem);
  const std::string shown = ShownArguments(arguments);
  if (!options) {
    FUZZ_REQUIRE(!problem.empty(), shown);
    return;
  }
  if (options->source != lumenor::SelectionSource::kItems) return;
  // Each id written in ASCII digits, and read as written.
  const auto at = std::find(arguments.begin(), arguments.end(), L"--items");
  FUZZ_REQUIRE(at != arguments.end() && at + 1 != arguments.end(), shown);
  const std::vector<std::wstring> parts = [&] {
    std::wstring list = *(at + 1);
    std::replace(list.begin(), list.end(), L',', L'\n');
    return lumenor::fuzz::Lines(list);
  }();
  FUZZ_REQUIRE(parts.size() == options->items.size(), shown);
  for (size_t index = 0; index < parts.size(); ++index) {
    FUZZ_REQUIRE(
        std::all_of(parts[index].begin(), parts[index].end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; }), shown);
    FUZZ_REQUIRE(std::stoull(parts[index]) == options->items[index], shown);
  }
}

void CheckShredOptions(const std::vector<std::wstring>& arguments) {
  std::wstring problem;
  const auto options = lumenor::ParseShredCommandOptions(arguments, problem);
  const std::string shown = ShownArguments(arguments);
  if (!options) {
    FUZZ_REQUIRE(!problem.empty(), shown);
    return;
  }
  FUZZ_REQUIRE(!options->paths.empty(), shown);
  for (const std::wstring& path : options->paths) FUZZ_REQUIRE(!path.starts_with(L"--"), shown);
}

void CheckJunkOptions(const std::vector<std::wstring>& arguments) {
  std::wstring problem;
  const auto options = lumenor::ParseJunkCommandOptions(arguments, problem);
  const std::string shown = ShownArguments(arguments);
  if (!options) {
    FUZZ_REQUIRE(!problem.empty(), shown);
    return;
  }
  FUZZ_REQUIRE(!options->masks.empty(), shown);
  for (const std::wstring& mask : options->masks) FUZZ_REQUIRE(lumenor::IsCatalogueMask(mask), shown);
  if (options->folder) FUZZ_REQUIRE(lumenor::CanonicalFolder(*options->folder).has_value(), shown);
}

void CheckUpdateOptions(const std::vector<std::wstring>& arguments) {
  std::wstring problem;
  const auto options = lumenor::ParseUpdateCheckOptions(arguments, problem);
  const std::string shown = ShownArguments(arguments);
  if (!options) {
    FUZZ_REQUIRE(!problem.empty(), shown);
    return;
  }
  FUZZ_REQUIRE(arguments.size() == (options->json ? 1u : 0u), shown);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<std::wstring> arguments = lumenor::fuzz::Lines(lumenor::fuzz::WideFromFuzzBytes(data, size));
  if (arguments.size() == 1 && arguments.front().empty()) arguments.clear();
  CheckTraceOptions(arguments);
  CheckShredOptions(arguments);
  CheckJunkOptions(arguments);
  CheckUpdateOptions(arguments);
  return 0;
}
