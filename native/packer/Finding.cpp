#include "packer/Finding.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

#include <nlohmann/json.hpp>

#include "packer/Text.h"

namespace vessant {
namespace {

const char* wordFor(Severity severity) {
  return severity == Severity::Error ? "error" : "warning";
}

using Identity = std::tuple<std::string, int, std::string, std::string>;

// clang-format off
constexpr const char* kNames[] = {  // one a line, so that two people can add one each
    "archive-in-archive",
    "argument-count",
    "bad-archive",
    "bad-boolean",
    "bad-comment",
    "bad-escape",
    "bad-executable",
    "bad-hint",
    "bad-id",
    "bad-kind",
    "bad-mode",
    "bad-name",
    "bad-number",
    "bad-option",
    "bad-program",
    "bad-property",
    "bad-separator",
    "bad-setting",
    "bad-sum",
    "bad-unpacks",
    "blank-label",
    "byte-order-mark",
    "cut-index",
    "cut-text",
    "doubled-label",
    "doubled-switch",
    "doubled-tag",
    "empty-block",
    "empty-statement",
    "endless-macro",
    "endless-script",
    "ends-without-launch",
    "extra-words",
    "file-beyond-end",
    "file-count",
    "file-overlap",
    "file-type",
    "home-for-jvm-file",
    "hostile-name",
    "ignored-argument",
    "index-offset",
    "label-in-first-statement",
    "launcher-carries-files",
    "lone-mark",
    "lost-arguments",
    "missing-archive",
    "missing-argument",
    "missing-blank",
    "missing-block-end",
    "missing-colon",
    "missing-file",
    "missing-main-class",
    "missing-parenthesis",
    "missing-path",
    "missing-tag",
    "missing-tag-name",
    "name-length",
    "no-comments",
    "no-files",
    "no-installer",
    "no-jvm-file",
    "no-jvm-installer",
    "no-launch-script",
    "no-launcher",
    "no-output",
    "no-script",
    "no-verification-class",
    "no-verify-class",
    "not-a-file",
    "not-a-launcher",
    "not-a-zip",
    "number-out-of-range",
    "other-machine",
    "output-is-input",
    "planted-class",
    "quoted-class-path",
    "raw-title",
    "refused-statement",
    "refused-text",
    "repeated-id",
    "repeated-name",
    "search-all-hides",
    "second-launch-script",
    "second-script",
    "single-quotes",
    "size-flag",
    "space-check",
    "stray-block-end",
    "stray-carriage-return",
    "syntax-error",
    "text-behind-label",
    "text-behind-quote",
    "text-too-large",
    "too-large",
    "too-many-files",
    "unchecked-search",
    "unclosed-quote",
    "unclosed-shell-quote",
    "unfinished-text",
    "unknown-command",
    "unknown-function",
    "unknown-id",
    "unknown-jvm-tag",
    "unknown-label",
    "unknown-tag",
    "unknown-variable",
    "unquoted-argument",
    "unquoted-path",
    "unreachable-statement",
    "unread-bytes",
    "unreadable-file",
    "unset-variable",
    "unused-archive",
    "unused-file",
    "unused-value",
    "utf-16",
    "wrong-kind",
    "wrong-sum",
    "zero-byte",
};
// clang-format on

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

const std::vector<std::string>& findingNames() {
  static const std::vector<std::string> names(std::begin(kNames), std::end(kNames));
  return names;
}

}  // namespace vessant
