// Expected outputs embedded in the test executables, so they are at hand inside Wine.
#pragma once

// Every catalogue node in catalogue order: id, level, image, name, separated by tabs.
#define IDR_EXPECTED_CATALOGUE 9001
// Every location record of every item on a made-up machine: item id, order, kind, root,
// folder or key path, selector, separated by tabs.
#define IDR_EXPECTED_LOCATIONS 9002
// The junk mask catalogue in order: row, mask, description, "default" or "-".
#define IDR_EXPECTED_JUNK_MASKS 9003
// The community's winapp2.ini (version 260730), in rules_tests only, when the build found
// a copy (tests/CMakeLists.txt).
#define IDR_WINAPP2_REAL_FILE 9004
// The built-in rules as they load: id, category, application, item, default, warning.
#define IDR_EXPECTED_BUILTIN_RULES 9005

#ifndef RC_INVOKED
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::testing {

std::string LoadTestData(int resourceId);

// The lines of a text, without their line ends ("\n" or "\r\n").
std::vector<std::string> SplitLines(std::string_view text);
// The fields of a tab-separated line.
std::vector<std::string> SplitTabs(std::string_view line);

}  // namespace lumenor::testing
#endif
