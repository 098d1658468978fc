// The settings page inside the main window: loading "setting.ini" into the controls, the
// question when the page is left with changes, saving, and the start-up entry.
#include "app/DlgOptions.h"
#include "base/ModulePath.h"
#include "res/resource.h"
#include "settings/StartupEntry.h"
#include "tests/shell/ShellTestSupport.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

constexpr wchar_t kChangedQuestion[] = L"Some items have benn changed,do you want to save the changes?";

class SettingsPage : public testing::MainWindowTest {
 protected:
  void TearDown() override {
    MainWindowTest::TearDown();
    // The next test starts from the built-in defaults.
    (void)DeleteFileW(settings_.c_str());
    (void)RemoveDirectoryW(settings_.c_str());
  }

  // Opens the main window over a settings file holding `text`, on the settings page.
  void OpenWith(const std::string& text) {
    ASSERT_TRUE(testing::WriteFileBytes(settings_, text));
    Open();
    Command(ID_TRAY_SETTINGS);
  }
  HWND Control(int id) { return GetDlgItem(Window().OptionsPage().Handle(), id); }
  bool Ticked(int id) { return IsDlgButtonChecked(Window().OptionsPage().Handle(), id) == BST_CHECKED; }
  void Click(int id) {
    SendMessageW(Control(id), BM_CLICK, 0, 0);
    Pump();
  }
  int Selected(int id) { return static_cast<int>(SendMessageW(Control(id), CB_GETCURSEL, 0, 0)); }
  void Choose(int id, int index) { SendMessageW(Control(id), CB_SETCURSEL, static_cast<WPARAM>(index), 0); }
  std::vector<std::wstring> Entries(int id) {
    std::vector<std::wstring> texts;
    const int count = static_cast<int>(SendMessageW(Control(id), CB_GETCOUNT, 0, 0));
    for (int index = 0; index < count; ++index) {
      wchar_t text[32] = {};
      SendMessageW(Control(id), CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
      texts.emplace_back(text);
    }
    return texts;
  }
  std::vector<bool> TimeListsEnabled() {
    return {IsWindowEnabled(Control(IDC_OPTIONS_DAY)) != FALSE, IsWindowEnabled(Control(IDC_OPTIONS_HOUR)) != FALSE,
            IsWindowEnabled(Control(IDC_OPTIONS_MINUTE)) != FALSE, IsWindowEnabled(Control(IDC_OPTIONS_WHEN)) != FALSE};
  }
  // From the default file: every box, radio button and list to another value.
  void ChangeEveryControl() {
    Click(IDC_OPTIONS_AUTO_UPDATE);
    Click(IDC_OPTIONS_SCAN_EVERY);
    Click(IDC_OPTIONS_EXIT);
    Choose(IDC_OPTIONS_DAY, 3);
    Choose(IDC_OPTIONS_HOUR, 4);
    Choose(IDC_OPTIONS_MINUTE, 5);
    Choose(IDC_OPTIONS_WHEN, 1);
  }
  // Day, hour, minute and AM/PM as the lists show them.
  std::vector<int> ShownTime() {
    return {Selected(IDC_OPTIONS_DAY), Selected(IDC_OPTIONS_HOUR), Selected(IDC_OPTIONS_MINUTE),
            Selected(IDC_OPTIONS_WHEN)};
  }
  // Leaves the settings page for the privacy page, which asks about changes.
  void LeavePage() { Command(ID_TRAY_SECURITY); }
  int Stored(const wchar_t* section, const wchar_t* key) { return CIniFileRW(kSettingsFileName).ReadInt(section, key); }

  const std::wstring settings_ = ModuleFolder() + L"setting.ini";
};

const std::vector<bool> kAllOn{true, true, true, true};
const std::vector<bool> kAllOff{false, false, false, false};

TEST_F(SettingsPage, ShowsTheDefaultFileWithTheTimeListsFilledAndDisabled) {
  (void)DeleteFileW(settings_.c_str());
  Open();
  Command(ID_TRAY_SETTINGS);
  EXPECT_FALSE(Ticked(IDC_OPTIONS_RUN_AT_STARTUP));
  EXPECT_FALSE(Ticked(IDC_OPTIONS_AUTO_UPDATE));
  EXPECT_FALSE(Ticked(IDC_OPTIONS_SCAN_EVERY));
  EXPECT_FALSE(Ticked(IDC_OPTIONS_EXIT));
  EXPECT_TRUE(Ticked(IDC_OPTIONS_TRAY));
  EXPECT_EQ(Entries(IDC_OPTIONS_DAY), (std::vector<std::wstring>{L"Day", L"Sunday", L"Monday", L"Tuesday", L"Wednesday",
                                                                 L"Thursday", L"Friday", L"Saturday"}));
  const std::vector<std::wstring> hours = Entries(IDC_OPTIONS_HOUR);
  ASSERT_EQ(hours.size(), 12u);
  EXPECT_EQ(hours.front(), L"0");
  EXPECT_EQ(hours.back(), L"11");
  const std::vector<std::wstring> minutes = Entries(IDC_OPTIONS_MINUTE);
  ASSERT_EQ(minutes.size(), 60u);
  EXPECT_EQ(minutes.back(), L"59");
  EXPECT_EQ(Entries(IDC_OPTIONS_WHEN), (std::vector<std::wstring>{L"AM", L"PM"}));
  EXPECT_EQ(ShownTime(), (std::vector<int>{0, 9, 38, 0}));
  EXPECT_EQ(TimeListsEnabled(), kAllOff);

  Click(IDC_OPTIONS_SCAN_EVERY);
  EXPECT_EQ(TimeListsEnabled(), kAllOn);
  Click(IDC_OPTIONS_SCAN_EVERY);
  EXPECT_EQ(TimeListsEnabled(), kAllOff);
  EXPECT_TRUE(messageBoxes_.empty());
}

TEST_F(SettingsPage, BoxesLabelsAndFrameTitlesLetThePagesOwnBackgroundShowThrough) {
  OpenWith("");
  const HWND page = Window().OptionsPage().Handle();
  RECT client{};
  ASSERT_TRUE(GetClientRect(page, &client));
  const HDC screen = GetDC(page);
  // The page as it paints itself, panel and all.
  const HDC pageDc = CreateCompatibleDC(screen);
  const HBITMAP pageBitmap = CreateCompatibleBitmap(screen, client.right, client.bottom);
  const HGDIOBJ pagePrevious = SelectObject(pageDc, pageBitmap);
  SendMessageW(page, WM_ERASEBKGND, reinterpret_cast<WPARAM>(pageDc), 0);
  for (const int id : {IDC_OPTIONS_GENERAL_FRAME, IDC_OPTIONS_RUN_AT_STARTUP, IDC_OPTIONS_AUTO_UPDATE,
                       IDC_OPTIONS_EXIT_FRAME, IDC_OPTIONS_TRAY, IDC_OPTIONS_SCAN_EVERY, IDC_OPTIONS_AT}) {
    const HWND control = Control(id);
    RECT box{};
    ASSERT_TRUE(GetWindowRect(control, &box)) << id;
    MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&box), 2);
    const int width = box.right - box.left;
    const int height = box.bottom - box.top;
    // What the control fills its background with, as it asks the page for it.
    const HDC controlDc = CreateCompatibleDC(screen);
    const HBITMAP controlBitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ controlPrevious = SelectObject(controlDc, controlBitmap);
    const UINT message = id == IDC_OPTIONS_AT ? WM_CTLCOLORSTATIC : WM_CTLCOLORBTN;
    const auto brush = reinterpret_cast<HBRUSH>(
        SendMessageW(page, message, reinterpret_cast<WPARAM>(controlDc), reinterpret_cast<LPARAM>(control)));
    const RECT all{0, 0, width, height};
    FillRect(controlDc, &all, brush);
    int differing = 0;
    for (int y = 0; y < height; y += 2) {
      for (int x = 0; x < width; x += 3) {
        differing += GetPixel(controlDc, x, y) != GetPixel(pageDc, box.left + x, box.top + y) ? 1 : 0;
      }
    }
    EXPECT_EQ(differing, 0) << "control " << id << " paints its own background over the page's";
    SelectObject(controlDc, controlPrevious);
    DeleteObject(controlBitmap);
    DeleteDC(controlDc);
  }
  SelectObject(pageDc, pagePrevious);
  DeleteObject(pageBitmap);
  DeleteDC(pageDc);
  ReleaseDC(page, screen);
}

TEST_F(SettingsPage, AnEmptyFileReadsAsAllOnes) {
  OpenWith("");
  for (int box : {IDC_OPTIONS_RUN_AT_STARTUP, IDC_OPTIONS_AUTO_UPDATE, IDC_OPTIONS_SCAN_EVERY}) {
    EXPECT_TRUE(Ticked(box)) << box;
  }
  EXPECT_EQ(Window().OptionsInForce().exitOnClose + Window().OptionsInForce().trayOnClose, 2);
  EXPECT_EQ(ShownTime(), (std::vector<int>{1, 1, 1, 1}));
  EXPECT_EQ(TimeListsEnabled(), kAllOn);
  LeavePage();
  EXPECT_TRUE(messageBoxes_.empty());

  Command(ID_TRAY_SETTINGS);
  Choose(IDC_OPTIONS_HOUR, 2);  // the schedule is on: its time counts
  LeavePage();
  EXPECT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(Selected(IDC_OPTIONS_HOUR), 1) << "cancelled: the list shows the file again";
}

TEST_F(SettingsPage, NumbersTheListsCannotShowAreKeptAndNotCountedAsChanges) {
  OpenWith("[Scan Schduler]\r\nevery=1\r\nday=9\r\nhour=20\r\nminute=75\r\nwhen=3\r\n");
  EXPECT_EQ(Window().OptionsInForce().day, 9);
  EXPECT_EQ(Window().OptionsInForce().hour, 20);
  EXPECT_EQ(Window().OptionsInForce().minute, 75);
  EXPECT_EQ(ShownTime(), (std::vector<int>{CB_ERR, CB_ERR, CB_ERR, CB_ERR}));
  LeavePage();
  EXPECT_TRUE(messageBoxes_.empty());

  Command(ID_TRAY_SETTINGS);
  Choose(IDC_OPTIONS_MINUTE, 5);
  Click(IDC_OPTIONS_SAVE);
  EXPECT_EQ(Stored(L"Scan Schduler", L"minute"), 5);
  EXPECT_EQ(Stored(L"Scan Schduler", L"day"), 9) << "a list showing nothing does not overwrite the file";
  EXPECT_EQ(Stored(L"Scan Schduler", L"hour"), 20);
}

TEST_F(SettingsPage, OnlyBoxesAndTheTimeOfAnActiveScheduleCountAsChanges) {
  (void)DeleteFileW(settings_.c_str());
  Open();
  Command(ID_TRAY_SETTINGS);
  Choose(IDC_OPTIONS_WHEN, 1);
  Choose(IDC_OPTIONS_HOUR, 3);  // the schedule is off: its lists do not count
  LeavePage();
  EXPECT_TRUE(messageBoxes_.empty());
  EXPECT_EQ(Selected(IDC_OPTIONS_WHEN), 1) << "without the question nothing is put back";

  Command(ID_TRAY_SETTINGS);
  Click(IDC_OPTIONS_SCAN_EVERY);
  Choose(IDC_OPTIONS_HOUR, 3);
  Click(IDC_OPTIONS_SCAN_EVERY);  // cleared again: only the lists differ, and they no longer count
  LeavePage();
  EXPECT_TRUE(messageBoxes_.empty());

  Command(ID_TRAY_SETTINGS);
  Click(IDC_OPTIONS_SCAN_EVERY);
  Choose(IDC_OPTIONS_MINUTE, 0);
  LeavePage();
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text, kChangedQuestion);
  EXPECT_EQ(messageBoxes_[0].caption, L"Lumenor");
  EXPECT_EQ(messageBoxes_[0].type, static_cast<UINT>(MB_OKCANCEL));
}

TEST_F(SettingsPage, CancelPutsEveryControlBackAndOkSavesEverything) {
  (void)DeleteFileW(settings_.c_str());
  Open();
  Command(ID_TRAY_SETTINGS);
  ChangeEveryControl();
  answer_ = IDCANCEL;
  LeavePage();
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_FALSE(Ticked(IDC_OPTIONS_AUTO_UPDATE));
  EXPECT_FALSE(Ticked(IDC_OPTIONS_SCAN_EVERY));
  EXPECT_FALSE(Ticked(IDC_OPTIONS_EXIT));
  EXPECT_TRUE(Ticked(IDC_OPTIONS_TRAY));
  EXPECT_EQ(ShownTime(), (std::vector<int>{0, 9, 38, 0}));
  EXPECT_EQ(TimeListsEnabled(), kAllOff);
  EXPECT_EQ(Stored(L"General Settings", L"Automaticly update"), 0);

  Command(ID_TRAY_SETTINGS);
  EXPECT_EQ(messageBoxes_.size(), 1u) << "showing the page again finds nothing changed";
  ChangeEveryControl();
  answer_ = IDOK;
  LeavePage();
  ASSERT_EQ(messageBoxes_.size(), 2u);
  EXPECT_EQ(Window().OptionsInForce().autoUpdate, 1);
  EXPECT_EQ(Window().OptionsInForce().scheduleOn, 1);
  EXPECT_EQ(Window().OptionsInForce().exitOnClose, 1);
  EXPECT_EQ(Window().OptionsInForce().trayOnClose, 0);
  EXPECT_EQ((std::vector<int>{Window().OptionsInForce().day, Window().OptionsInForce().hour,
                              Window().OptionsInForce().minute, Window().OptionsInForce().pm}),
            (std::vector<int>{3, 4, 5, 1}));
  EXPECT_EQ(Stored(L"General Settings", L"Automaticly update"), 1);
  EXPECT_EQ(Stored(L"Scan Schduler", L"every"), 1);
  EXPECT_EQ(Stored(L"Scan Schduler", L"day"), 3);
  EXPECT_EQ(Stored(L"Scan Schduler", L"when"), 1);
  EXPECT_EQ(Stored(L"Exit setting", L"exit"), 1);
  EXPECT_EQ(Stored(L"Exit setting", L"tray"), 0);
}

TEST_F(SettingsPage, ExitAndTrayAreWrittenOnlyWhenTheyChanged) {
  // "00" and "01" read as 0 and 1 but would be written back as "0" and "1".
  OpenWith("[Exit setting]\r\nexit=00\r\ntray=01\r\n");
  Click(IDC_OPTIONS_SAVE);
  std::string file = testing::ReadFileBytes(settings_);
  EXPECT_NE(file.find("exit=00"), std::string::npos) << file;
  EXPECT_NE(file.find("tray=01"), std::string::npos) << file;

  Click(IDC_OPTIONS_EXIT);  // the radio button clears "Minimize to Tray"
  Click(IDC_OPTIONS_SAVE);
  file = testing::ReadFileBytes(settings_);
  EXPECT_NE(file.find("exit=1"), std::string::npos) << file;
  EXPECT_NE(file.find("tray=0"), std::string::npos) << file;
  EXPECT_EQ(Window().OptionsInForce().exitOnClose, 1);
  EXPECT_EQ(Window().OptionsInForce().trayOnClose, 0);
}

TEST_F(SettingsPage, AFileHoldingBothCloseChoicesIsNotAChangeTheUserMade) {
  OpenWith("");  // "exit" and "tray" both read as 1; the radio buttons show one of them
  LeavePage();
  EXPECT_TRUE(messageBoxes_.empty());
  Command(ID_TRAY_SETTINGS);
  Click(Ticked(IDC_OPTIONS_EXIT) ? IDC_OPTIONS_TRAY : IDC_OPTIONS_EXIT);
  LeavePage();
  EXPECT_EQ(messageBoxes_.size(), 1u) << "choosing the other one is";
}

TEST_F(SettingsPage, AFailedWriteKeepsThePageCountedAsChanged) {
  // A folder in the file's place: every read gives the missing-key 1, every write fails.
  ASSERT_TRUE(CreateDirectoryW(settings_.c_str(), nullptr));
  Open();
  Command(ID_TRAY_SETTINGS);
  Click(IDC_OPTIONS_AUTO_UPDATE);
  Click(IDC_OPTIONS_SAVE);
  EXPECT_EQ(Window().OptionsInForce().autoUpdate, 1) << "the value in force changes only with the file";
  LeavePage();
  EXPECT_EQ(messageBoxes_.size(), 1u);
}

TEST_F(SettingsPage, StartupEntryIsTheQuotedProgramAndGoesWhenTheBoxIsCleared) {
  LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();  // writes the user's Run key
  (void)DeleteFileW(settings_.c_str());
  Open();
  const std::wstring program = L"C:\\Program Files\\Lumenor\\lumenor.exe";
  Window().OptionsPage().SetProgramPath(program);
  Command(ID_TRAY_SETTINGS);
  Click(IDC_OPTIONS_RUN_AT_STARTUP);
  Click(IDC_OPTIONS_SAVE);
  EXPECT_EQ(Stored(L"General Settings", L"Run at windows startup"), 1);

  const std::wstring expected = L"\"C:\\Program Files\\Lumenor\\lumenor.exe\" -A";
  wchar_t data[MAX_PATH] = {};
  DWORD type = 0;
  DWORD size = sizeof data;
  ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, kRunKeyPath, L"Lumenor", RRF_RT_ANY | RRF_NOEXPAND, &type, data, &size),
            ERROR_SUCCESS);
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(size, (expected.size() + 1) * sizeof(wchar_t)) << "the terminator is counted whole";
  EXPECT_EQ(std::wstring(data), expected);

  Click(IDC_OPTIONS_RUN_AT_STARTUP);
  Click(IDC_OPTIONS_SAVE);
  EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, kRunKeyPath, L"Lumenor", RRF_RT_ANY, nullptr, nullptr, nullptr),
            ERROR_FILE_NOT_FOUND);
  Click(IDC_OPTIONS_SAVE);  // clearing an entry that is not there is no failure
  EXPECT_EQ(Stored(L"General Settings", L"Run at windows startup"), 0);
  EXPECT_TRUE(messageBoxes_.empty());
}

}  // namespace
}  // namespace lumenor
