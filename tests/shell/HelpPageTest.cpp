// The help page's three buttons.
#include "base/ModulePath.h"
#include "tests/shell/ShellTestSupport.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

using testing::MainWindowTest;

TEST_F(MainWindowTest, HelpButtonsOpenTheSupportPageTwiceAndTheManualFromTheProgramFolder) {
  ASSERT_TRUE(SetEnvironmentVariableW(kMakerSiteVariable, L"http://127.0.0.1:8080/"));
  Open();
  ASSERT_TRUE(SetCurrentDirectoryW(L"C:\\"));
  HWND help = Window().HelpPage().Handle();
  for (int button : {1011, 1012, 1013}) {
    SendMessageW(help, WM_COMMAND, static_cast<WPARAM>(button), 0);
  }
  ASSERT_TRUE(SetEnvironmentVariableW(kMakerSiteVariable, nullptr));
  ASSERT_EQ(opened_.size(), 3u);
  EXPECT_EQ(opened_[0].target, L"http://127.0.0.1:8080/support.php");
  EXPECT_EQ(opened_[0].showCommand, SW_SHOWNORMAL);
  EXPECT_EQ(opened_[1].target, L"Manual.chm");
  EXPECT_EQ(opened_[1].showCommand, SW_SHOWMAXIMIZED);
  EXPECT_EQ(opened_[2].target, opened_[0].target);

  wchar_t current[MAX_PATH] = {};
  ASSERT_GT(GetCurrentDirectoryW(MAX_PATH, current), 0u);
  std::wstring folder = current;
  if (folder.back() != L'\\') {
    folder += L'\\';
  }
  EXPECT_EQ(folder, ModuleFolder()) << "the manual opens from the program's folder, which stays current";
}

}  // namespace
}  // namespace lumenor
