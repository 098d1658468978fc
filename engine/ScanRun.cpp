#include "engine/ScanRun.h"

#include "engine/RulePlan.h"
#include "engine/TraceSink.h"

#include <algorithm>

namespace lumenor {

ScanRun::ScanRun(const std::vector<const CMyObject*>& items, const rules::RuleBook* rules) {
  items_.reserve(items.size());
  for (const CMyObject* node : items) {
    Item& item = items_.emplace_back();
    item.node = node;
    item.rule = rules != nullptr ? rules->Find(node->Id()) : nullptr;
    for (const CMyObject* level = node; level != nullptr && item.levels < 3; level = level->Parent()) {
      item.counters[item.levels++] = CounterOf(level);
    }
  }
  counters_ = std::make_unique<Counter[]>(slots_.size());
}

size_t ScanRun::CounterOf(const CMyObject* node) {
  const auto [slot, added] = slots_.try_emplace(node, slots_.size());
  (void)added;  // a node shared by several items keeps its first slot
  return slot->second;
}

void ScanRun::KeepFirst(size_t count) {
  if (count < items_.size()) items_.resize(count);
}

void ScanRun::CountTrace(const Item& item, uint64_t bytes) {
  for (size_t level = 0; level < item.levels; ++level) {
    Counter& counter = counters_[item.counters[level]];
    counter.count.fetch_add(1, std::memory_order_relaxed);
    counter.bytes.fetch_add(bytes, std::memory_order_relaxed);
  }
  total_.count.fetch_add(1, std::memory_order_relaxed);
  total_.bytes.fetch_add(bytes, std::memory_order_relaxed);
}

int ScanRun::FoundCount(const CMyObject& node) const {
  const auto slot = slots_.find(&node);
  return slot == slots_.end() ? 0 : counters_[slot->second].count.load(std::memory_order_relaxed);
}

uint64_t ScanRun::FoundBytes(const CMyObject& node) const {
  const auto slot = slots_.find(&node);
  return slot == slots_.end() ? 0 : counters_[slot->second].bytes.load(std::memory_order_relaxed);
}

int ScanRun::ItemsWithTraces() const {
  int items = 0;
  for (const Item& item : items_) items += FoundCount(*item.node) > 0 ? 1 : 0;
  return items;
}

std::vector<std::wstring> ScanRun::CookieHostsFound() const {
  std::vector<std::wstring> hosts;
  for (const Item& item : items_) {
    if (item.plan == nullptr) continue;
    for (const PlannedDatabase& database : item.plan->databases) {
      for (const std::wstring& host : database.hostsFound) {
        std::wstring name = host.starts_with(L'.') ? host.substr(1) : host;
        // Hosts are stored in their ASCII form; they compare without regard to case.
        std::transform(name.begin(), name.end(), name.begin(),
                       [](wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; });
        if (!name.empty()) hosts.push_back(std::move(name));
      }
    }
  }
  std::sort(hosts.begin(), hosts.end());
  hosts.erase(std::unique(hosts.begin(), hosts.end()), hosts.end());
  return hosts;
}

void ReportTrace(ScanRun& run, const ScanRun::Item& item, TraceSink& sink, std::wstring location,
                 std::wstring_view name, bool isRegistry, uint64_t bytes) {
  FoundTrace trace;
  trace.item = item.node;
  trace.name = name;
  trace.location = std::move(location);
  trace.isRegistry = isRegistry;
  trace.bytes = bytes;
  run.CountTrace(item, bytes);
  sink.TraceFound(trace);
}

}  // namespace lumenor
