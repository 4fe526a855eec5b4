#include "packer/explain/HomeText.h"

#include <ostream>

#include "packer/Text.h"

namespace vessant {
namespace {

const char* wordFor(HomeState state) {
  if (state == HomeState::Exists) return "exists";
  if (state == HomeState::Missing) return "missing";
  return state == HomeState::NotExecutable ? "not executable" : "passed over";
}

void writeProperty(const PropertyAnswer& property, std::ostream& out) {
  out << "        " << (property.isRight ? "ok     " : "wrong  ") << printable(property.name)
      << ": wanted \"" << printable(property.wanted) << "\", got ";
  if (property.got) {
    out << '"' << printable(*property.got) << "\"\n";
  } else {
    out << "no answer\n";
  }
}

void writeAnswer(const HomeAnswer& answer, std::ostream& out) {
  if (!answer.answered) {
    out << "      refused: the verification class did not answer; the command ended with status "
        << answer.status << '\n'
        << "        " << printable(answer.command) << '\n';
    if (!answer.errors.empty()) out << "        it said: " << printable(answer.errors) << '\n';
    return;
  }
  out << (answer.isTaken ? "      taken\n" : "      refused\n");
  for (const PropertyAnswer& property : answer.properties) writeProperty(property, out);
}

void writeHome(const Home& home, std::ostream& out) {
  std::string word = wordFor(home.state);
  word.resize(16, ' ');
  out << "    " << word << printable(home.path) << "  (" << printable(home.origin) << ")";
  if (!home.reason.empty()) out << ": " << printable(home.reason);
  out << '\n';
  if (home.answer) writeAnswer(*home.answer, out);
}

}  // namespace

void writeHomesOfFile(const HomesOfFile& file, std::ostream& out) {
  out << "  " << printable(str(file.entry->fileName)) << ", \"" << printable(file.description)
      << "\"\n";
  if (!file.namesProperties) {
    out << "    none: it names no JVM_PROPERTIES, so it is for ILAUNCH alone\n";
    return;
  }
  if (file.isHidden) out << "    no hints: a file in front of it has SEARCH_ALL\n";
  for (const Home& home : file.homes) writeHome(home, out);
  if (file.searchesDisk) out << "    then, if no hint helps, the whole disk is searched\n";
}

}  // namespace vessant
