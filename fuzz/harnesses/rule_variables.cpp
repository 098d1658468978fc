// A rule's text split at its variables. What is split joins back into the input, each
// variable written with a name that stands for it (letter case and the other names of the
// same variable aside); what is refused names the first unknown variable, or "%" for a
// sign without its partner, as signs pair up from the left.
#include "fuzz/FuzzInput.h"
#include "rules/Variables.h"

#include <algorithm>

namespace {

using lumenor::fuzz::Shown;
using lumenor::rules::SplitVariables;
using lumenor::rules::TextPart;
using lumenor::rules::VariableFromName;

wchar_t FlipAsciiCase(wchar_t c) {
  if (c >= L'a' && c <= L'z') return static_cast<wchar_t>(c - L'a' + L'A');
  if (c >= L'A' && c <= L'Z') return static_cast<wchar_t>(c - L'A' + L'a');
  return c;
}

// What the text should be refused for, found apart from the product: "" when nothing.
std::wstring FirstFault(std::wstring_view text) {
  for (;;) {
    const size_t open = text.find(L'%');
    if (open == std::wstring_view::npos) return {};
    const size_t close = text.find(L'%', open + 1);
    if (close == std::wstring_view::npos) return L"%";
    const std::wstring_view name = text.substr(open + 1, close - open - 1);
    if (!VariableFromName(name)) return L"%" + std::wstring(name) + L"%";
    text.remove_prefix(close + 1);
  }
}

void CheckJoinsBack(std::wstring_view input, const std::vector<TextPart>& parts, const std::string& shown) {
  std::wstring_view rest = input;
  bool afterText = false;
  for (const TextPart& part : parts) {
    if (!part.variable) {
      FUZZ_REQUIRE(!part.text.empty() && !afterText, shown);
      FUZZ_REQUIRE(part.text.find(L'%') == std::wstring::npos, shown + " gives the text " + Shown(part.text));
      FUZZ_REQUIRE(rest.starts_with(part.text), shown + " gives the text " + Shown(part.text));
      rest.remove_prefix(part.text.size());
      afterText = true;
      continue;
    }
    FUZZ_REQUIRE(part.text.empty() && rest.starts_with(L'%'), shown);
    const size_t close = rest.find(L'%', 1);
    FUZZ_REQUIRE(close != std::wstring_view::npos, shown);
    const std::wstring_view name = rest.substr(1, close - 1);
    FUZZ_REQUIRE(VariableFromName(name) == part.variable, shown + " reads " + Shown(name) + " as another variable");
    rest.remove_prefix(close + 1);
    afterText = false;
  }
  FUZZ_REQUIRE(rest.empty(), shown + " leaves out " + Shown(rest));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::wstring input = lumenor::fuzz::WideFromFuzzBytes(data, size);
  const std::string shown = Shown(input);
  std::wstring unknown;
  const std::optional<std::vector<TextPart>> parts = SplitVariables(input, &unknown);
  const std::wstring fault = FirstFault(input);
  FUZZ_REQUIRE(parts.has_value() == fault.empty(), shown + " expected to fail for " + Shown(fault));
  FUZZ_REQUIRE(SplitVariables(input).has_value() == parts.has_value(), shown);
  if (!parts) {
    FUZZ_REQUIRE(unknown == fault, shown + " names " + Shown(unknown) + ", not " + Shown(fault));
    return 0;
  }
  CheckJoinsBack(input, *parts, shown);

  // Letter case of the names never matters.
  std::wstring flipped = input;
  std::transform(flipped.begin(), flipped.end(), flipped.begin(), FlipAsciiCase);
  const std::optional<std::vector<TextPart>> flippedParts = SplitVariables(flipped);
  FUZZ_REQUIRE(flippedParts && flippedParts->size() == parts->size(), shown + " in the other case");
  for (size_t index = 0; index < parts->size(); ++index) {
    FUZZ_REQUIRE((*flippedParts)[index].variable == (*parts)[index].variable, shown + " in the other case");
  }
  return 0;
}
