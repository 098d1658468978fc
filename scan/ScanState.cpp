#include "scan/ScanState.h"

namespace lumenor {

std::atomic<int> ScanBusy{0};
std::atomic<int> ScanRunning{0};
std::atomic<int> EraseDialogOpen{0};

}  // namespace lumenor
