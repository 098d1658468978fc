// Reads our own XML rule files (the built-in rules, and every *.xml a user puts in the
// "rules" folder) into the rule model. A file that is not well-formed XML, or whose root is
// not <rules version="1">, loads nothing and gives one problem. Any other fault gives a
// problem at the line and column of the element at fault, and leaves that element out;
// where leaving it out alone would make a rule reach further (an exclusion, a detection,
// a Windows range, a running test, a warning, or an element not known at all), the item,
// application or profile action holding it is left out instead. The rest loads.
//
// Item ids: in the built-in rules each item carries its own (`id`, kFirstBuiltInId to
// kLastBuiltInId, unique in the file); in other files an `id` attribute is accepted and
// ignored, and the id is DerivedItemId(application, item). An item whose id is already
// taken in the file is left out; the first one stays.
//
// Pure: text in, model out; nothing here touches the system.
#pragma once

#include "rules/RuleModel.h"

#include <string_view>

namespace lumenor::rules {

// `bytes` is the whole file as stored: UTF-8 with or without byte order mark, or UTF-16
// with its mark. `fileName` goes into every position and problem. Problems are in the
// order of their place in the file.
RuleSet ReadXmlRules(std::string_view bytes, std::wstring_view fileName, RuleOrigin origin);

// Whether a file holds XML rather than another rule format: its first character, after a
// byte order mark and blanks, is '<'.
bool LooksLikeXml(std::string_view bytes);

}  // namespace lumenor::rules
