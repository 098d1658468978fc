// Finding an application's folders from its own settings files: the first browser or
// mail profile from "profiles.ini", and PocoMail's folders from "poco.ini".
#pragma once

#include "engine/SystemPaths.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumenor {

// The folder name of the first profile, followed by a backslash, for the application
// folder `applicationFolder` under AppData (for example "\Mozilla\Firefox\"). Empty when
// the profile is not relative ("Path" without "/") or AppData is unknown; nothing when
// "profiles.ini" has no usable "Path" in "Profile0" (the item then adds nothing more).
std::optional<std::wstring> LookUpProfileName(const SystemPaths& paths, std::wstring_view applicationFolder);

enum class PocoMailFolder { kAttachments = 1, kAddresses = 2, kMail = 3 };

// A PocoMail folder from "poco.ini": used as it stands when absolute ("D:\..."), else
// under AppData + "\PocoMail\". Empty when AppData is unknown; nothing when the key is
// missing.
std::optional<std::wstring> LookUpPocoMailFolder(const SystemPaths& paths, PocoMailFolder which);

}  // namespace lumenor
