#include "tests/rules/RuleSetViews.h"

#include "base/TextEncoding.h"

namespace lumenor::testing {

const rules::Item* FindItem(const rules::RuleSet& rules, std::wstring_view name, std::wstring_view applicationName) {
  for (const rules::Application& application : rules.applications) {
    if (!applicationName.empty() && application.name != applicationName) continue;
    for (const rules::Item& item : application.items) {
      if (item.name == name) return &item;
    }
  }
  return nullptr;
}

const rules::Application* FindApplication(const rules::RuleSet& rules, std::wstring_view name) {
  for (const rules::Application& application : rules.applications) {
    if (application.name == name) return &application;
  }
  return nullptr;
}

std::vector<std::wstring> ItemNames(const rules::RuleSet& rules) {
  std::vector<std::wstring> names;
  for (const rules::Application& application : rules.applications) {
    for (const rules::Item& item : application.items) names.push_back(item.name);
  }
  return names;
}

std::vector<std::string> ProblemTexts(const rules::RuleSet& rules) {
  std::vector<std::string> texts;
  for (const rules::Problem& problem : rules.problems) {
    texts.push_back(std::to_string(problem.where.line) + " [" + ToUtf8(problem.entry) + "] " + ToUtf8(problem.message));
  }
  return texts;
}

}  // namespace lumenor::testing
