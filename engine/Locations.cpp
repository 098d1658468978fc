#include "engine/Locations.h"

#include "engine/LocationFillers.h"
#include "engine/LocationTable.h"

#include <string>
#include <string_view>
#include <utility>

namespace lumenor {

namespace {

// One item's records as they are made.
class RecordList {
 public:
  void Key(HKEY root, std::wstring_view path, std::wstring_view selector, int kind) {
    Add(root, std::wstring(path), selector, kind);
  }

  // Folders end with a backslash; one read from elsewhere may lack it. An empty folder
  // stays empty.
  void File(std::wstring folder, std::wstring_view selector, int kind) {
    if (!folder.empty() && folder.back() != L'\\') {
      folder += L'\\';
    }
    Add(nullptr, std::move(folder), selector, kind);
  }

  std::vector<LocationRecord> Take() { return std::move(records_); }

 private:
  // A record that does not fit is left out rather than shortened: a shortened path
  // would name another place.
  void Add(HKEY root, std::wstring path, std::wstring_view selector, int kind) {
    if (records_.size() >= kMaxFixedItemLocations || path.size() > kMaxLocationText ||
        selector.size() > kMaxLocationText) {
      return;
    }
    LocationRecord& record = records_.emplace_back();
    record.rootKey = root;
    record.rootPrefix = RootPrefixOf(root);
    record.path = std::move(path);
    record.selector = selector;
    record.kind = kind;
  }

  std::vector<LocationRecord> records_;
};

// Makes the records of one row; false when a folder the row needs cannot be found,
// which ends the item's list.
bool AddRow(const LocationRow& row, const SystemPaths& paths, RecordList& records) {
  switch (row.base) {
    case From::kCurrentUser:
      records.Key(HKEY_CURRENT_USER, row.path, row.selector, row.kind);
      return true;
    case From::kLocalMachine:
      records.Key(HKEY_LOCAL_MACHINE, row.path, row.selector, row.kind);
      return true;
    case From::kRecycleBins:
      for (const std::wstring& folder : RecycleBinFolders(paths)) {
        records.File(folder + std::wstring(row.path), row.selector, row.kind);
      }
      return true;
    case From::kMessengerLogFolders:
      for (const std::wstring& folder : MessengerLogFolders(paths)) {
        records.File(folder + std::wstring(row.path), row.selector, row.kind);
      }
      return true;
    case From::kPagingFile: {
      const auto pagingFile = FindPagingFile(paths);
      if (!pagingFile) return false;
      records.File(pagingFile->folder, pagingFile->name, row.kind);
      return true;
    }
    case From::kAppDataElseNoFolder: {
      // Without AppData the record is still made, with an empty folder that nothing
      // will walk.
      const auto appData = FindBaseFolder(From::kAppData, paths);
      records.File(appData ? *appData + std::wstring(row.path) : std::wstring(), row.selector, row.kind);
      return appData.has_value();
    }
    default: {
      const auto folder = FindBaseFolder(row.base, paths);
      if (!folder) return false;
      records.File(*folder + std::wstring(row.path), row.selector, row.kind);
      return true;
    }
  }
}

}  // namespace

std::vector<LocationRecord> FixedItemLocations(unsigned id, const SystemPaths& paths) {
  RecordList records;
  for (const LocationRow& row : LocationRows()) {
    if (row.item == id && !AddRow(row, paths, records)) {
      break;
    }
  }
  return records.Take();
}

}  // namespace lumenor
