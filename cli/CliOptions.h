// The arguments of lumenor-cli's commands, read without windows and without touching
// anything: a mistake is found before any command starts.
#pragma once

#include "shred/ShredMethod.h"

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

enum class SelectionSource { kRecent, kDefault, kOneClick, kAll, kItems, kCommunity };

struct TraceCommandOptions {
  SelectionSource source = SelectionSource::kRecent;
  std::vector<unsigned> items;  // for kItems
  bool json = false;
};

struct ShredCommandOptions {
  ShredMethod method = ShredMethod::kQuick;  // the page's default
  bool json = false;
  std::vector<std::wstring> paths;
};

struct JunkCommandOptions {
  std::optional<std::wstring> folder;  // as typed; every fixed disk without it
  std::vector<std::wstring> masks;     // catalogue masks, in the order given
  bool remove = false;
  bool json = false;
};

struct UpdateCheckOptions {
  bool json = false;
};

// Each reads the arguments after its command's name. On a mistake, `problem` names it.
// scan and erase: a selection (item ids are ASCII digits, nothing else) and --json.
std::optional<TraceCommandOptions> ParseTraceCommandOptions(const std::vector<std::wstring>& arguments,
                                                            std::wstring& problem);
// shred: --method, --json and at least one path; the paths are judged when it runs.
std::optional<ShredCommandOptions> ParseShredCommandOptions(const std::vector<std::wstring>& arguments,
                                                            std::wstring& problem);
// junk: an unknown mask or a folder that is not absolute is a mistake.
std::optional<JunkCommandOptions> ParseJunkCommandOptions(const std::vector<std::wstring>& arguments,
                                                          std::wstring& problem);
// update-check: --json alone.
std::optional<UpdateCheckOptions> ParseUpdateCheckOptions(const std::vector<std::wstring>& arguments,
                                                          std::wstring& problem);

}  // namespace lumenor
