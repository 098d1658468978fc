// The browser's own store of visited addresses, cleared together with its history folder.
#pragma once

namespace lumenor {

// Clears the store through its component object. Does nothing where the component is
// not available.
void ClearUrlHistoryStore();

}  // namespace lumenor
