// The arguments of lumenor-cli's scan and erase commands.
#pragma once

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

// Reads the arguments after the command name. On a mistake, `problem` names it.
std::optional<TraceCommandOptions> ParseTraceCommandOptions(const std::vector<std::wstring>& arguments,
                                                            std::wstring& problem);

}  // namespace lumenor
