#include "packer/Finding.h"

#include <algorithm>
#include <ostream>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "packer/Json.h"
#include "packer/Text.h"

namespace vessant {
namespace {

const char* wordFor(Severity severity) {
  return severity == Severity::Error ? "error" : "warning";
}

using Identity = std::tuple<std::string, int, std::string, std::string>;

}  // namespace

void Findings::add(Finding finding) {
  if (std::find(allowed_.begin(), allowed_.end(), finding.name) != allowed_.end()) return;
  findings_.push_back(std::move(finding));
}

void Findings::error(const std::string& file, int line, const char* name, const std::string& text) {
  add({file, line, Severity::Error, text, name});
}

void Findings::warning(const std::string& file, int line, const char* name,
                       const std::string& text) {
  add({file, line, Severity::Warning, text, name});
}

bool Findings::hasErrors() const {
  return std::any_of(findings_.begin(), findings_.end(),
                     [](const Finding& f) { return f.severity == Severity::Error; });
}

std::vector<Finding> Findings::sorted() const {
  std::unordered_map<std::string, std::size_t> rank;
  for (const Finding& finding : findings_) rank.try_emplace(finding.file, rank.size());
  std::set<Identity> seen;
  std::vector<Finding> result;
  for (const Finding& f : findings_) {
    if (seen.emplace(f.file, f.line, f.name, f.text).second) result.push_back(f);
  }
  std::stable_sort(result.begin(), result.end(), [&rank](const Finding& a, const Finding& b) {
    return std::pair(rank.at(a.file), a.line) < std::pair(rank.at(b.file), b.line);
  });
  return result;
}

std::string lineOf(const Finding& finding) {
  const std::string line = finding.line > 0 ? ":" + std::to_string(finding.line) : "";
  return printable(finding.file) + line + ": " + wordFor(finding.severity) + ": " +
         printable(finding.text) + " [" + finding.name + "]";
}

void printFindings(const Findings& findings, std::ostream& stream) {
  for (const Finding& finding : findings.sorted()) stream << lineOf(finding) << '\n';
}

void printFindingsAsJson(const Findings& findings, std::ostream& stream) {
  Json list = Json::array();
  for (const Finding& finding : findings.sorted()) {
    list.push_back({{"file", finding.file},
                    {"line", finding.line},
                    {"severity", wordFor(finding.severity)},
                    {"name", finding.name},
                    {"text", finding.text}});
  }
  stream << jsonText({{"findings", list}});
}

}  // namespace vessant
