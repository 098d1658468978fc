#include "junk/JunkMatcher.h"

namespace lumenor {

JunkMasks::JunkMasks(std::span<const std::wstring> masks) {
  masks_.reserve(masks.size());
  for (const std::wstring& mask : masks) {
    masks_.push_back(Read(mask));
  }
}

JunkMasks::Mask JunkMasks::Read(const std::wstring& mask) {
  Mask read;
  // Every mask, the special ones too when their own rule fails: "*." and the extension.
  read.hasFallback = mask.starts_with(L"*.");
  if (read.hasFallback) {
    read.fallback = mask.substr(2);
  }
  if (mask == L"*.~*") {
    read.rule = Rule::kExtensionStartsWithTilde;
  } else if (mask == L"~*.*") {
    read.rule = Rule::kBaseStartsWithTilde;
  } else if (mask == L"*.??~") {
    read.rule = Rule::kTwoAndTilde;
  } else if (mask == L"ffastun.*" || mask == L"chklist.*") {
    read.rule = Rule::kBase;
    read.name = mask.substr(0, mask.size() - 2);
  } else if (mask == L"file????._dd") {
    read.rule = Rule::kEightCharacterBase;
    read.name = L"file";
    read.extension = L"_dd";
  } else if (mask == L"twain???.mtx") {
    read.rule = Rule::kEightCharacterBase;
    read.name = L"twain";
    read.extension = L"mtx";
  } else if (mask == L"iebak.dat" || mask == L"system.1st" || mask == L"suhdlog.dat" || mask == L"modemdet.txt" ||
             mask == L"thumbs.db" || mask == L"mscreate.dir") {
    read.rule = Rule::kWholeName;
    read.name = mask;
  }
  return read;
}

bool JunkMasks::RuleAccepts(const Mask& mask, std::wstring_view name, std::wstring_view base,
                            std::wstring_view extension) {
  switch (mask.rule) {
    case Rule::kExtensionStartsWithTilde:
      return extension.starts_with(L'~');
    case Rule::kBaseStartsWithTilde:
      return base.starts_with(L'~');
    case Rule::kTwoAndTilde:
      return extension.size() == 3 && extension.back() == L'~';
    case Rule::kBase:
      return base == mask.name;
    case Rule::kWholeName:
      return name == mask.name;
    case Rule::kEightCharacterBase:
      return base.size() == 8 && base.starts_with(mask.name) && extension == mask.extension;
    case Rule::kExtensionOnly:
      return false;
  }
  return false;
}

std::optional<size_t> JunkMasks::FirstAccepting(std::wstring_view lowerName) const {
  const size_t dot = lowerName.rfind(L'.');
  if (dot == std::wstring_view::npos) {
    return std::nullopt;
  }
  const std::wstring_view base = lowerName.substr(0, dot);
  const std::wstring_view extension = lowerName.substr(dot + 1);
  for (size_t index = 0; index < masks_.size(); ++index) {
    const Mask& mask = masks_[index];
    if (RuleAccepts(mask, lowerName, base, extension) || (mask.hasFallback && mask.fallback == extension)) {
      return index;
    }
  }
  return std::nullopt;
}

bool MaskAccepts(std::wstring_view mask, std::wstring_view lowerName) {
  const std::wstring one[] = {std::wstring(mask)};
  return JunkMasks(one).FirstAccepting(lowerName).has_value();
}

std::optional<size_t> FirstAcceptingMask(std::wstring_view lowerName, std::span<const std::wstring> masks) {
  return JunkMasks(masks).FirstAccepting(lowerName);
}

}  // namespace lumenor
