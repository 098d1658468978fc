#include "junk/JunkState.h"

namespace lumenor {

std::atomic<int> JunkSearchRunning{0};

}  // namespace lumenor
