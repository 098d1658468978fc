// Texts of the executable's string table.
#pragma once

#include <string>

namespace lumenor {

// The text of string-table entry `id` of the running executable, exactly as it stands
// (trailing blanks included); empty when there is no such entry.
std::wstring LoadResourceString(unsigned id);

}  // namespace lumenor
