// Whether a file name is junk under a list of masks. Names are compared lower-cased and
// split at their last dot; a name without a dot is never junk. Most masks are "*." and
// one extension; a few of the catalogue's masks have rules of their own (leading "~",
// "?" positions, whole names), tried first and falling back to the extension test.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// A list of masks, each read once into its rule, for the many names of a walk.
class JunkMasks {
 public:
  explicit JunkMasks(std::span<const std::wstring> masks);

  // The place in the list of the first mask that accepts `lowerName`, or nothing.
  std::optional<size_t> FirstAccepting(std::wstring_view lowerName) const;

 private:
  enum class Rule {
    kExtensionOnly,
    kExtensionStartsWithTilde,
    kBaseStartsWithTilde,
    kTwoAndTilde,
    kBase,
    kWholeName,
    kEightCharacterBase
  };
  struct Mask {
    Rule rule = Rule::kExtensionOnly;
    std::wstring name;       // the base, the whole name, or the base's first letters, by rule
    std::wstring extension;  // for kEightCharacterBase
    std::wstring fallback;   // what follows "*." in the mask; empty when it does not start so
    bool hasFallback = false;
  };
  static Mask Read(const std::wstring& mask);
  static bool RuleAccepts(const Mask& mask, std::wstring_view name, std::wstring_view base,
                          std::wstring_view extension);

  std::vector<Mask> masks_;
};

// `lowerName` (already lower-cased) under one mask.
bool MaskAccepts(std::wstring_view mask, std::wstring_view lowerName);

// The place in `masks` of the first mask that accepts `lowerName`, or nothing.
std::optional<size_t> FirstAcceptingMask(std::wstring_view lowerName, std::span<const std::wstring> masks);

// `name` in lower case, as the masks are written (junk/LowerCaseName.cpp: it asks the
// system for the letters beyond ASCII).
std::wstring LowerCaseName(std::wstring_view name);

}  // namespace lumenor
