#include "engine/TraceEngine.h"

#include "catalogue/Catalogue.h"
#include "engine/FilePath.h"
#include "engine/FileTraces.h"
#include "engine/Registry.h"
#include "engine/RegistryTraces.h"
#include "engine/UrlHistory.h"

#include <windows.h>

namespace lumenor {

namespace {

constexpr unsigned kVisitedSitesItem = 130;

void ReportTrace(CMyObject& item, TraceSink& sink, std::wstring location, std::wstring_view name, bool isRegistry) {
  FoundTrace trace;
  trace.item = &item;
  trace.name = name;
  trace.location = std::move(location);
  trace.isRegistry = isRegistry;
  item.IncrementFoundCount();
  if (CMyObject* application = item.Parent()) {
    application->IncrementFoundCount();
    if (CMyObject* category = application->Parent()) {
      category->IncrementFoundCount();
    }
  }
  sink.TraceFound(trace);
}

}  // namespace

void ScanItem(CMyObject& item, TraceSink& sink, const StopToken& stop) {
  sink.ItemStarted(item);
  for (int index = 0; index < item.LocationCount(); ++index) {
    item.SetCurrentLocation(index);
    const LocationRecord& location = item.Locations()[static_cast<size_t>(index)];
    if (location.IsRegistry()) {
      ScanRegistryLocation(location.rootKey, location.path, location.selector, stop,
                           [&](std::wstring_view keyPath, std::wstring_view valueName) {
                             ReportTrace(item, sink, location.rootPrefix + std::wstring(keyPath), valueName, true);
                           });
    } else {
      ScanFileLocation(location.path, location.selector, location.kind, stop,
                       [&](std::wstring_view folder, std::wstring_view fileName) {
                         ReportTrace(item, sink, std::wstring(folder), fileName, false);
                       });
    }
  }
  sink.ItemFinished(item);
}

void EraseItem(CMyObject& item, EraseTally& tally) {
  for (int index = 0; index < item.LocationCount(); ++index) {
    item.SetCurrentLocation(index);
    const LocationRecord& location = item.Locations()[static_cast<size_t>(index)];
    if (location.IsRegistry()) {
      EraseRegistryLocation(location.rootKey, location.path, location.selector, tally);
    } else {
      if (item.Id() == kVisitedSitesItem) {
        ClearUrlHistoryStore();
      }
      EraseFileLocation(location.path, location.selector, tally);
    }
  }
}

bool RemoveListedTrace(const std::wstring& name, const std::wstring& location, bool isRegistry) {
  if (!isRegistry) {
    if (!IsAbsoluteFolder(location)) {
      return false;
    }
    return DeleteFileW(ForFileApi(location + name).c_str()) != FALSE;
  }
  // Every row is taken to be under the current user, whatever root it names; that is how
  // the list has always removed single values.
  const size_t rootEnd = location.find(L'\\');
  const std::wstring keyPath = rootEnd == std::wstring::npos ? std::wstring() : location.substr(rootEnd + 1);
  const UniqueKey key = OpenKey(HKEY_CURRENT_USER, keyPath, KEY_SET_VALUE);
  if (key) {
    (void)RegDeleteValueW(key.Get(), name.c_str());  // the row goes whether or not the value did
  }
  return true;
}

void ResetFoundCounts(CMyObject* root) {
  ForEachNode(root, [](CMyObject& node) { node.SetFoundCount(0); });
}

}  // namespace lumenor
