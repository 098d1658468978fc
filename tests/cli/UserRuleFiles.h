// A user's own rule files as lumenor-cli finds them: written into the "rules" folder beside
// the program (C:\lumenor\rules\ where the tests run) and removed when the test ends, the
// folder too when the test made it, so that no other test sees them. Their folders start
// with %Temp%: the test points TEMP, which lumenor-cli inherits, at a folder of traces of
// its own on the scratch drive E: (under the test's temporary folder where there is no E:).
#pragma once

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::testing {

class UserRuleFiles : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Writes the rule file `name` (ending in ".xml" to be read) into the rules folder.
  bool WriteRules(std::wstring_view name, std::string_view text);
  // The file's path, as lumenor-cli names it in its warnings.
  std::wstring RulesPath(std::wstring_view name) const { return rulesFolder_ + std::wstring(name); }
  // The folder %Temp% stands for, ending with "\".
  const std::wstring& Traces() const { return traces_; }
  std::wstring operator/(std::wstring_view relative) const { return traces_ + std::wstring(relative); }
  // Points %Temp% at another folder for the rest of the test.
  static void SetTemp(std::wstring folder);

  static ProgramResult Cli(std::wstring_view arguments);

 private:
  std::wstring rulesFolder_;
  bool madeRulesFolder_ = false;
  std::vector<std::wstring> written_;
  std::wstring traces_;
  std::wstring previousTemp_;
};

// `text` with every `placeholder` replaced by `value` in UTF-8.
std::string Replaced(std::string text, std::string_view placeholder, std::wstring_view value);

// The lines of `out` whose "type" is `type`, sorted.
std::vector<std::string> LinesOfType(const std::string& out, std::string_view type);

// The lines lumenor-cli prints with --json, as it writes them.
std::string TraceLine(unsigned id, std::string_view item, const std::wstring& location, const std::wstring& name,
                      uint64_t bytes, bool registry = false);
std::string SkippedLine(unsigned id, const std::wstring& location, std::string_view reason);

// The id of the first node of `level` named `name` in the output of "list --json"; 0 when
// there is none.
unsigned ListedId(const std::string& out, int level, std::string_view name);
// The id of the item named `item` of the application named `application`; 0 when the
// list has none.
unsigned ListedItem(const std::string& out, std::string_view application, std::string_view item);

// The ids as --items takes them.
std::wstring ItemList(const std::vector<unsigned>& ids);

}  // namespace lumenor::testing
