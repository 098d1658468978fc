// Registry keys no rule may delete as a whole, as protected folders are for files: a hive
// itself, the keys that hold every program's settings (Software, Software\Microsoft,
// ...\Windows\CurrentVersion, ...), those whose loss breaks Windows (Explorer's FileExts
// resets every default program, Run and RunOnce start programs, Classes, Policies,
// SYSTEM), and any key above one of them. A key inside may go, and so may a named value
// of a protected key; every value of one at once may not.
#pragma once

#include "rules/RuleModel.h"

namespace lumenor {

// Whether deleting `key` with everything below it would take a protected key.
bool IsProtectedKey(const rules::RegistryKey& key);

}  // namespace lumenor
