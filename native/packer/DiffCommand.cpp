#include "packer/DiffCommand.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "packer/FileKinds.h"
#include "packer/Installer.h"
#include "packer/LineDiff.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// The files of both installers that have the same name.
struct Pair {
  const FileIndexEntry* before;
  const FileIndexEntry* after;
};

class InstallerDiff {
 public:
  InstallerDiff(const Installer& before, const Installer& after) : before_(before), after_(after) {}

  [[nodiscard]] std::string run();

 private:
  void say(const std::string& subject, const std::string& text) {
    text_ += subject + ": " + text + "\n";
  }
  void match();
  void compareValue(const std::string& subject, const std::string& before,
                    const std::string& after);
  void compareEntry(const Pair& pair);
  void compareContents(const Pair& pair);
  void compareBytes(const std::string& subject, const ByteSource& before, const ByteSource& after);
  void comparePlaces();

  const Installer& before_;
  const Installer& after_;
  std::vector<Pair> pairs_;
  std::string text_;
};

std::string describe(const FileIndexEntry& entry) {
  return std::string(fileTypeName(entry.type)) + " " + std::to_string(entry.fileId) + ", " +
         std::to_string(entry.length) + " bytes";
}

std::string unpacksText(const FileIndexEntry& entry) {
  if (!entry.hasSizeInformation) return "nothing";
  return std::to_string(entry.expandedFileCount) + " files, " + std::to_string(entry.expandedSize) +
         " bytes";
}

/// The position of the first byte that differs, as far as both go.
std::optional<std::uint64_t> firstDifference(const ByteSource& before, const ByteSource& after) {
  constexpr std::size_t kBlock = 1U << 18U;
  const std::uint64_t length = std::min(before.length(), after.length());
  for (std::uint64_t position = 0; position < length; position += kBlock) {
    const std::size_t count = std::min<std::uint64_t>(kBlock, length - position);
    const std::string a = before.bytesAt(position, count);
    const std::string b = after.bytesAt(position, count);
    if (a == b) continue;
    const auto [place, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return position + static_cast<std::uint64_t>(place - a.begin());
  }
  return std::nullopt;
}

std::string InstallerDiff::run() {
  compareValue("mode byte", std::to_string(before_.modeByte()), std::to_string(after_.modeByte()));
  compareBytes("launcher", before_.launcher(), after_.launcher());
  match();
  for (const Pair& pair : pairs_) {
    compareEntry(pair);
    compareContents(pair);
  }
  if (text_.empty()) comparePlaces();
  return text_;
}

/// Of several files of one name the first belongs to the first.
void InstallerDiff::match() {
  std::map<std::string, std::deque<const FileIndexEntry*>> others;
  for (const FileIndexEntry& entry : after_.entries())
    others[str(entry.fileName)].push_back(&entry);
  for (const FileIndexEntry& entry : before_.entries()) {
    std::deque<const FileIndexEntry*>& found = others[str(entry.fileName)];
    if (found.empty()) {
      say("only in " + printable(before_.path()),
          printable(entry.fileName) + ", " + describe(entry));
      continue;
    }
    pairs_.push_back({&entry, found.front()});
    found.pop_front();
  }
  for (const FileIndexEntry& entry : after_.entries()) {
    const std::deque<const FileIndexEntry*>& left = others[str(entry.fileName)];
    if (std::find(left.begin(), left.end(), &entry) == left.end()) continue;
    say("only in " + printable(after_.path()), printable(entry.fileName) + ", " + describe(entry));
  }
}

void InstallerDiff::compareValue(const std::string& subject, const std::string& before,
                                 const std::string& after) {
  if (before != after) say(subject, before + " -> " + after);
}

void InstallerDiff::compareEntry(const Pair& pair) {
  const std::string name = printable(pair.before->fileName);
  compareValue(name + ": kind", fileTypeName(pair.before->type), fileTypeName(pair.after->type));
  compareValue(name + ": id", std::to_string(pair.before->fileId),
               std::to_string(pair.after->fileId));
  compareValue(name + ": unpacks to", unpacksText(*pair.before), unpacksText(*pair.after));
}

void InstallerDiff::compareContents(const Pair& pair) {
  const ByteSource before = before_.bytesOf(*pair.before);
  const ByteSource after = after_.bytesOf(*pair.after);
  const std::string name = printable(pair.before->fileName);
  const bool areTexts = isTextType(pair.before->type) && isTextType(pair.after->type) &&
                        std::max(before.length(), after.length()) <= ByteSource::kLargestText;
  if (!areTexts) return compareBytes(name, before, after);
  text_ +=
      unifiedDiff({printable(before_.path()) + "/" + name, printable(after_.path()) + "/" + name},
                  before.text(), after.text());
}

void InstallerDiff::compareBytes(const std::string& subject, const ByteSource& before,
                                 const ByteSource& after) {
  const std::optional<std::uint64_t> place = firstDifference(before, after);
  const std::string from = place ? ", differ from byte " + std::to_string(*place) + " on" : "";
  if (before.length() != after.length()) {
    say(subject, std::to_string(before.length()) + " bytes -> " + std::to_string(after.length()) +
                     " bytes" + from);
  } else if (place) {
    say(subject, std::to_string(before.length()) + " bytes" + from);
  }
}

/// The same files may come in another order or lie at other places.
void InstallerDiff::comparePlaces() {
  for (std::size_t i = 0; i < before_.entries().size(); ++i) {
    const FileIndexEntry& a = before_.entries()[i];
    const FileIndexEntry& b = after_.entries()[i];
    if (!(a.fileName == b.fileName)) return say("files", "the same in another order");
    if (a.offset != b.offset) return say("files", "the same at other places");
  }
  if (before_.size() != after_.size()) say("files", "the same, with other bytes around them");
}

/// One line for each change: the mode byte, the launcher, files that only one has, kinds, ids, what
/// files unpack to, bytes, order and places; texts as a unified diff. Empty for installers that are
/// the same.
std::string diffInstallers(const Installer& before, const Installer& after) {
  return InstallerDiff(before, after).run();
}

struct DiffOptions {
  std::string before;
  std::string after;
};

int diff(const DiffOptions& options, std::ostream& out) {
  const Installer before(options.before);
  const Installer after(options.after);
  before.requireIndex();
  after.requireIndex();
  const std::string text = diffInstallers(before, after);
  out << text;
  return text.empty() ? kFine : kFindings;
}

}  // namespace

void addDiffCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("diff", "Tell what changed between two installers");
  const auto options = std::make_shared<DiffOptions>();
  command->add_option("BEFORE", options->before, "An installer")->required();
  command->add_option("AFTER", options->after, "The installer to compare it with")->required();
  command->callback([options, &session] { session.status = diff(*options, session.out); });
}

}  // namespace vessant
