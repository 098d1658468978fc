// Tests that erase real user locations (the Recent folder, RunMRU, the browser history,
// the recycle bins) or would wipe a drive if the folder rules failed. They run inside the
// Wine test prefix, which holds nothing of anyone's, and elsewhere only when
// LUMENOR_DESTRUCTIVE_TESTS=1 says that the machine may lose those traces.
#pragma once

#include <gtest/gtest.h>

namespace lumenor::testing {

bool RunningUnderWine();
bool DestructiveTestsAllowed();

}  // namespace lumenor::testing

// At the top of a test or a fixture's SetUp.
#define LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS()                                      \
  do {                                                                                \
    if (!::lumenor::testing::DestructiveTestsAllowed()) {                             \
      GTEST_SKIP() << "erases real user locations: runs under Wine, or with "         \
                      "LUMENOR_DESTRUCTIVE_TESTS=1 on a machine whose traces may go"; \
    }                                                                                 \
  } while (false)
