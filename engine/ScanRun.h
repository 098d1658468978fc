// What one scan found, kept apart from the catalogue: the items it covers in catalogue
// order with the locations filled for each, and for every item, application and
// category the traces found and their bytes. A scan fills a run and an erase takes it;
// the catalogue itself never changes, so a new scan needs no reset, only a new run.
//
// Threads: the run is made on the page's thread before its worker starts. The worker
// fills locations and raises the counts; the page may read the counts at any time while
// it does (they are atomic). Locations are read only after the worker has ended.
#pragma once

#include "browserdb/CookieKeepList.h"
#include "catalogue/CMyObject.h"
#include "catalogue/LocationRecord.h"
#include "rules/RuleBook.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lumenor {

class TraceSink;

struct RulePlan;

class ScanRun {
 public:
  // One item of the run: the catalogue node and, once scanned, its locations: the records
  // of a fixed item, or the plan of a rule item (`rule` set) for this machine.
  struct Item {
    const CMyObject* node = nullptr;
    std::vector<LocationRecord> locations;
    // What the scan found at each location, in bytes: an erase of a whole key reports it.
    std::vector<uint64_t> locationBytes;
    const rules::RuleBook::Entry* rule = nullptr;
    std::shared_ptr<RulePlan> plan;

   private:
    friend class ScanRun;
    // Where the counts of the item, its application and its category are kept.
    size_t counters[3] = {0, 0, 0};
    size_t levels = 0;
  };

  // A run over `items` (catalogue items, in the order they are to be scanned), with
  // counts of 0 for them and for every application and category above them. Items the
  // rule book knows are rule items.
  explicit ScanRun(const std::vector<const CMyObject*>& items, const rules::RuleBook* rules = nullptr);
  ScanRun(const ScanRun&) = delete;
  ScanRun& operator=(const ScanRun&) = delete;

  std::vector<Item>& Items() { return items_; }
  const std::vector<Item>& Items() const { return items_; }
  // Keeps the first `count` items: the rest were cut off by a stop, neither scanned nor
  // to be erased.
  void KeepFirst(size_t count);

  // One trace found in `item`: counted on it, its application and its category.
  void CountTrace(const Item& item, uint64_t bytes);

  // The traces found under `node` and their bytes; 0 for a node outside the run.
  int FoundCount(const CMyObject& node) const;
  uint64_t FoundBytes(const CMyObject& node) const;
  // Every trace of the run.
  int TraceCount() const { return total_.count.load(std::memory_order_relaxed); }
  uint64_t TraceBytes() const { return total_.bytes.load(std::memory_order_relaxed); }
  // How many items found at least one trace.
  int ItemsWithTraces() const;

  // The cookies the run's database actions leave in place.
  CookieKeepList& CookiesToKeep() { return cookiesToKeep_; }
  const CookieKeepList& CookiesToKeep() const { return cookiesToKeep_; }
  // The hosts whose cookies the scan found to delete, without a leading dot, each once, in
  // alphabetical order: what a user may choose to keep. Read once the scan has ended.
  std::vector<std::wstring> CookieHostsFound() const;

 private:
  struct Counter {
    std::atomic<int> count{0};
    std::atomic<uint64_t> bytes{0};
  };
  size_t CounterOf(const CMyObject* node);

  std::vector<Item> items_;
  // Made once by the constructor and never changed after: read while the worker counts.
  std::unordered_map<const CMyObject*, size_t> slots_;
  std::unique_ptr<Counter[]> counters_;
  Counter total_;
  CookieKeepList cookiesToKeep_;
};

// Counts a trace of `item` in the run and tells the sink about it.
void ReportTrace(ScanRun& run, const ScanRun::Item& item, TraceSink& sink, std::wstring location,
                 std::wstring_view name, bool isRegistry, uint64_t bytes);

}  // namespace lumenor
