#include "app/DlgOptions.h"

#include "base/ModulePath.h"
#include "base/ResourceString.h"
#include "base/Texts.h"
#include "controls/Layout.h"
#include "res/artwork_ids.h"
#include "res/resource.h"
#include "scan/DlgOptionsChoose.h"
#include "settings/StartupEntry.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <span>
#include <string>

namespace lumenor {

namespace {

// The panel's corner lies this far in from the page's; it reaches as far in from the others.
constexpr int kPanelInset = 10;

constexpr int kDayCount = 8;  // "Day" (every day), then Sunday to Saturday
constexpr int kHourCount = 12;
constexpr int kMinuteCount = 60;

struct BoxOption {
  int control;
  Option option;
};
// The check boxes and radio buttons, each with the option it shows.
constexpr BoxOption kCheckBoxes[] = {{IDC_OPTIONS_RUN_AT_STARTUP, Option::kRunAtStartup},
                                     {IDC_OPTIONS_AUTO_UPDATE, Option::kAutoUpdate},
                                     {IDC_OPTIONS_SCAN_EVERY, Option::kScheduleOn}};
constexpr BoxOption kCloseChoices[] = {{IDC_OPTIONS_EXIT, Option::kExit}, {IDC_OPTIONS_TRAY, Option::kTray}};
constexpr std::span<const BoxOption> kAllBoxes[] = {kCheckBoxes, kCloseChoices};
// The time lists, each with the option it shows, in the order they are written.
constexpr BoxOption kTimeLists[] = {{IDC_OPTIONS_DAY, Option::kDay},
                                    {IDC_OPTIONS_HOUR, Option::kHour},
                                    {IDC_OPTIONS_MINUTE, Option::kMinute},
                                    {IDC_OPTIONS_WHEN, Option::kWhen}};

void AddEntry(HWND list, const std::wstring& text) {
  (void)::SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));  // fails only out of memory
}

// The entry a list shows for `value`: none when the file holds a number the list has no
// entry for (the scheduler still compares the number as it stands).
int EntryFor(HWND list, int value) {
  const LRESULT count = ::SendMessageW(list, CB_GETCOUNT, 0, 0);
  return value >= 0 && value < count ? value : CB_ERR;
}

std::wstring EntriesText(int entries) {
  if (entries == 1) {
    return LoadResourceString(IDS_OPTIONS_RULES_ONE_ENTRY);
  }
  return FillIn(LoadResourceString(IDS_OPTIONS_RULES_ENTRIES),
                {GroupedNumber(static_cast<uint64_t>(std::max(entries, 0)))});
}

// "2026-07-30" for the version "260730" (yymmdd, the day the file was published); empty
// for a version that names no day.
std::wstring PublishedDay(const std::wstring& version) {
  if (version.size() != 6 || version.find_first_not_of(L"0123456789") != std::wstring::npos) {
    return {};
  }
  const auto twoDigits = [&version](size_t at) { return (version[at] - L'0') * 10 + (version[at + 1] - L'0'); };
  const int month = twoDigits(2);
  const int day = twoDigits(4);
  if (month < 1 || month > 12 || day < 1 || day > 31) {
    return {};
  }
  return L"20" + version.substr(0, 2) + L"-" + version.substr(2, 2) + L"-" + version.substr(4, 2);
}

}  // namespace

CDlgOptions::CDlgOptions()
    : CDialog(IDD_OPTIONS), programPath_(ModuleFileName()), communityRulesFile_(CommunityRulesFile()) {}

void CDlgOptions::LoadValues() { values_ = ReadOptionValues(CIniFileRW(kSettingsFileName)); }

bool CDlgOptions::OnInit() {
  LoadValues();
  (void)panel_.Load(IDB_SETTINGS_PANEL);  // without it the page is plain white
  if (save_.Attach(window_, IDC_OPTIONS_SAVE)) {
    save_.SetPictures(IDB_SETTINGS_SAVE_NORMAL, IDB_SETTINGS_SAVE_HOT, IDB_SETTINGS_SAVE_PRESSED,
                      IDB_SETTINGS_SAVE_DISABLED);
    (void)save_.FitToPicture(controls::Corner::kBottomRight);  // else the picture is stretched to the template's size
  }
  tasks_.Bind(window_);
  FillTimeLists();
  ShowOptions();
  ShowCommunityRules();
  return true;
}

void CDlgOptions::FillTimeLists() const {
  HWND day = Item(IDC_OPTIONS_DAY);
  for (int index = 0; index < kDayCount; ++index) {
    AddEntry(day, LoadResourceString(static_cast<unsigned>(IDS_OPTIONS_DAY_FIRST + index)));
  }
  HWND hour = Item(IDC_OPTIONS_HOUR);
  for (int index = 0; index < kHourCount; ++index) {
    AddEntry(hour, std::to_wstring(index));
  }
  HWND minute = Item(IDC_OPTIONS_MINUTE);
  for (int index = 0; index < kMinuteCount; ++index) {
    AddEntry(minute, std::to_wstring(index));
  }
  AddEntry(Item(IDC_OPTIONS_WHEN), LoadResourceString(IDS_OPTIONS_AM));
  AddEntry(Item(IDC_OPTIONS_WHEN), LoadResourceString(IDS_OPTIONS_PM));
}

void CDlgOptions::ShowOptions() {
  for (const std::span<const BoxOption> boxes : kAllBoxes) {
    for (const BoxOption& box : boxes) {
      (void)::CheckDlgButton(window_, box.control, ValueOf(values_, box.option) == 1 ? BST_CHECKED : BST_UNCHECKED);
    }
  }
  // A file may hold both choices (an empty one reads as all ones); the buttons can show
  // only one, and which one is up to the system. What they show is then the unchanged state.
  for (size_t index = 0; index < std::size(kCloseChoices); ++index) {
    closeChoicesShown_[index] = Checked(kCloseChoices[index].control);
  }
  for (const BoxOption& list : kTimeLists) {
    HWND control = Item(list.control);
    (void)::SendMessageW(control, CB_SETCURSEL, static_cast<WPARAM>(EntryFor(control, ValueOf(values_, list.option))),
                         0);  // CB_ERR clears the selection, which is what such a number shows
  }
  EnableTimeLists(values_.scheduleOn == 1);
}

void CDlgOptions::EnableTimeLists(bool enable) const {
  for (const BoxOption& list : kTimeLists) {
    (void)::EnableWindow(Item(list.control), enable ? TRUE : FALSE);
  }
}

int CDlgOptions::Checked(int id) const { return ::IsDlgButtonChecked(window_, id) == BST_CHECKED ? 1 : 0; }

int CDlgOptions::Selected(int id) const { return static_cast<int>(::SendMessageW(Item(id), CB_GETCURSEL, 0, 0)); }

bool CDlgOptions::Changed() const {
  for (const BoxOption& box : kCheckBoxes) {
    if (Checked(box.control) != ValueOf(values_, box.option)) {
      return true;
    }
  }
  for (size_t index = 0; index < std::size(kCloseChoices); ++index) {
    if (Checked(kCloseChoices[index].control) != closeChoicesShown_[index]) {
      return true;
    }
  }
  if (Checked(IDC_OPTIONS_SCAN_EVERY) == 0) {
    return false;
  }
  // AM/PM is left out on purpose: changing it alone does not count.
  for (const BoxOption& list : kTimeLists) {
    if (list.option != Option::kWhen &&
        Selected(list.control) != EntryFor(Item(list.control), ValueOf(values_, list.option))) {
      return true;
    }
  }
  return false;
}

void CDlgOptions::ShowPage(int showCommand) {
  if (window_ != nullptr && Changed()) {
    const int answer = messageBox_(window_, LoadResourceString(IDS_OPTIONS_CHANGED),
                                   LoadResourceString(IDS_PRODUCT_NAME), MB_OKCANCEL);
    if (answer == IDOK) {
      Save();
    } else {
      ShowOptions();
    }
  }
  Show(showCommand);
}

void CDlgOptions::Save() {
  const CIniFileRW file(kSettingsFileName);
  const auto write = [this, &file](Option option, int value) {
    if (WriteOption(file, option, value)) {
      ValueOf(values_, option) = value;  // a failed write leaves the page counted as changed
    }
  };
  const int runAtStartup = Checked(IDC_OPTIONS_RUN_AT_STARTUP);
  write(Option::kRunAtStartup, runAtStartup);
  // The entry's failures stay silent: the box shows the settings file, not the entry.
  if (runAtStartup == 1) {
    (void)AddStartupEntry(programPath_);
  } else {
    (void)RemoveStartupEntry();
  }
  for (const BoxOption& box : std::span(kCheckBoxes).subspan(1)) {  // the start-up box went first
    write(box.option, Checked(box.control));
  }
  for (const BoxOption& list : kTimeLists) {
    const int selected = Selected(list.control);
    if (selected != CB_ERR) {  // a list showing nothing keeps the number the file holds
      write(list.option, selected);
    }
  }
  // "exit" and "tray" are written only when they changed.
  for (size_t index = 0; index < std::size(kCloseChoices); ++index) {
    const BoxOption& radio = kCloseChoices[index];
    const int checked = Checked(radio.control);
    if (checked != ValueOf(values_, radio.option)) {
      write(radio.option, checked);
    }
    if (checked == ValueOf(values_, radio.option)) {
      closeChoicesShown_[index] = checked;
    }
  }
}

void CDlgOptions::PaintBackground(HDC dc, const RECT& client) const {
  (void)::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));  // fails only without a DC
  // The panel frames every control of the page, however large dialog units make it.
  const RECT panel{kPanelInset, kPanelInset, client.right - kPanelInset, client.bottom - kPanelInset};
  (void)panel_.DrawStretched(dc, panel);  // without the picture the page stays white
}

bool CDlgOptions::OnEraseBackground(HDC dc) {
  PaintBackground(dc, ClientRect());
  return true;
}

void CDlgOptions::PaintedBackground::Reset() {
  if (brush != nullptr) (void)::DeleteObject(brush);  // ours, selected nowhere
  if (bitmap != nullptr) (void)::DeleteObject(bitmap);
  brush = nullptr;
  bitmap = nullptr;
  size = {};
}

HBRUSH CDlgOptions::BackgroundBrush() {
  const RECT client = ClientRect();
  const SIZE size{client.right - client.left, client.bottom - client.top};
  if (background_.brush != nullptr && background_.size.cx == size.cx && background_.size.cy == size.cy) {
    return background_.brush;
  }
  background_.Reset();
  const HDC screen = ::GetDC(window_);
  const HDC memory = screen != nullptr ? ::CreateCompatibleDC(screen) : nullptr;
  const HBITMAP bitmap =
      screen != nullptr && size.cx > 0 && size.cy > 0 ? ::CreateCompatibleBitmap(screen, size.cx, size.cy) : nullptr;
  if (screen != nullptr) (void)::ReleaseDC(window_, screen);  // only says whether it was released
  if (memory != nullptr && bitmap != nullptr) {
    const HGDIOBJ previous = ::SelectObject(memory, bitmap);
    PaintBackground(memory, client);
    (void)::SelectObject(memory, previous);  // gives back our bitmap
    background_.bitmap = bitmap;
    background_.brush = ::CreatePatternBrush(bitmap);
    background_.size = size;
  } else if (bitmap != nullptr) {
    (void)::DeleteObject(bitmap);  // ours, selected nowhere
  }
  if (memory != nullptr) (void)::DeleteDC(memory);  // ours
  // Without a picture of the page the labels stay on white, as the page's edge is.
  return background_.brush != nullptr ? background_.brush : static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH));
}

void CDlgOptions::SetCommunityRules(const std::optional<rules::Winapp2Counts>& file) {
  communityRules_.reset();
  if (file) {
    communityRules_ = RulesInUse{file->version, file->entriesLoaded};
  }
  if (window_ != nullptr) {
    ShowCommunityRules();
  }
}

void CDlgOptions::ShowCommunityRules() const {
  std::wstring line = LoadResourceString(IDS_OPTIONS_RULES_NONE);
  if (communityRules_) {
    const std::wstring entries = EntriesText(communityRules_->entries);
    const std::wstring day = PublishedDay(communityRules_->version);
    line = day.empty() ? FillIn(LoadResourceString(IDS_OPTIONS_RULES_FILE_UNDATED), {entries})
                       : FillIn(LoadResourceString(IDS_OPTIONS_RULES_FILE), {day, entries});
  }
  (void)::SetDlgItemTextW(window_, IDC_OPTIONS_COMMUNITY_RULES, line.c_str());  // fails only without the label
}

bool CDlgOptions::StartRulesUpdate() {
  if (worker_.Running()) {
    return false;
  }
  // Read at each click, so that a changed address counts without a restart.
  const std::wstring address = CommunityRulesAddress(CIniFileRW(kSettingsFileName));
  // The thread holds nothing of the page: the result is shared with the run's end.
  const auto update = std::make_shared<CommunityRulesUpdate>();
  update->reason = LoadResourceString(IDS_OPTIONS_RULES_UNFINISHED);  // stands when the job gives up on a throw
  const HWND button = Item(IDC_OPTIONS_UPDATE_RULES);
  (void)::EnableWindow(button, FALSE);  // answers only the previous state
  return worker_.Start([update, address, target = communityRulesFile_](
                           const StopToken& stop) { *update = UpdateCommunityRules(address, target, stop); },
                       [this, update, button](controls::RunEnd end) {
                         (void)::EnableWindow(button, TRUE);
                         RulesUpdateEnded(end, *update);
                       });
}

void CDlgOptions::RulesUpdateEnded(controls::RunEnd end, const CommunityRulesUpdate& update) {
  if (end == controls::RunEnd::kNotStarted) {
    Tell(LoadResourceString(IDS_TASK_NOT_STARTED), MB_ICONWARNING);
    return;
  }
  if (!update.replaced) {
    Tell(FillIn(LoadResourceString(communityRules_ ? IDS_OPTIONS_RULES_KEPT : IDS_OPTIONS_RULES_NOT_DOWNLOADED),
                {update.reason}),
         MB_ICONWARNING);
    return;
  }
  communityRules_ = RulesInUse{update.version, update.entries};
  ShowCommunityRules();
  // The catalogue was built at start: the new rules show on the scan page after a restart.
  Tell(FillIn(LoadResourceString(IDS_OPTIONS_RULES_UPDATED), {EntriesText(update.entries)}), MB_ICONINFORMATION);
}

void CDlgOptions::Tell(const std::wstring& text, UINT icon) const {
  (void)messageBox_(window_, text, LoadResourceString(IDS_PRODUCT_NAME), MB_OK | icon);  // only OK to answer
}

bool CDlgOptions::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (tasks_.HandleMessage(message, result)) {
    return true;
  }
  const auto dc = reinterpret_cast<HDC>(wParam);
  if (message == WM_CTLCOLORDLG) {
    (void)::SetBkMode(dc, TRANSPARENT);  // answers only the previous mode
    result = reinterpret_cast<LRESULT>(::GetStockObject(NULL_BRUSH));
    return true;
  }
  // Labels, check boxes and frames lie over the panel: their background is the page's own.
  if (message == WM_CTLCOLORSTATIC || message == WM_CTLCOLORBTN) {
    POINT origin{0, 0};
    (void)::MapWindowPoints(reinterpret_cast<HWND>(lParam), window_, &origin, 1);  // 0 is also a valid answer
    (void)::SetBkMode(dc, TRANSPARENT);
    (void)::SetBrushOrgEx(dc, -origin.x, -origin.y, nullptr);  // fails only without a DC
    result = reinterpret_cast<LRESULT>(BackgroundBrush());
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

bool CDlgOptions::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_OPTIONS_SCAN_EVERY:
      EnableTimeLists(Checked(IDC_OPTIONS_SCAN_EVERY) == 1);
      return true;
    case IDC_OPTIONS_SAVE:
      Save();
      return true;
    case IDC_OPTIONS_ONE_CLICK:
      (void)ChooseOneClickItems(window_, CIniFileRW(kSettingsFileName));  // saved or not, the page stays as it is
      return true;
    case IDC_OPTIONS_CHECK_UPDATE:
      if (updateCheck_) {
        updateCheck_();
      }
      return true;
    case IDC_OPTIONS_UPDATE_RULES:
      (void)StartRulesUpdate();  // the page tells how it went, or that it could not start
      return true;
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

}  // namespace lumenor
