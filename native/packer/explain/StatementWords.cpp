#include "packer/explain/StatementWords.h"

#include "packer/check/ScriptFlow.h"
#include "packer/check/Statement.h"

namespace vessant {
namespace {

bool isOn(const std::string& flag) {
  return flag != "0";
}

/// Where a jump goes on: behind the label.
std::string placeOf(const std::vector<Statement>& statements, const std::string& label) {
  if (label.find('@') != std::string::npos) return "behind the label that " + label + " names";
  const std::optional<std::size_t> place = findLabelStatement(statements, label);
  if (!place) return "nowhere: there is no label :" + label + ", which ends the run with 255";
  const std::size_t next = *place + 1;
  if (next == statements.size()) return "behind :" + label + ", where the script ends";
  return "behind :" + label + ", with " + std::to_string(next + 1);
}

std::string seconds(const std::string& number) {
  return number == "0" ? "" : ", showing \"Running\"";
}

std::string findJvm(const Statement& s) {
  return std::string("look for a JVM") +
         (isOn(s.argument(0)) ? ", showing progress" : ", silently") +
         (isOn(s.argument(1)) ? ", and tell the user when there is none" : "") +
         "; N1 is then 1 or 0, S1 the Java home, S2 a JVM file made for it";
}

std::string verify(const Statement& s) {
  return "verify the JVM of the embedded JVM file " + s.argument(2) +
         (isOn(s.argument(0)) ? ", showing progress" : "") +
         (isOn(s.argument(1)) ? ", and tell the user when it is not valid" : "") +
         "; N1 is then 1 or 0, S1 the Java home";
}

std::string installJvm(const Statement& s) {
  const std::string mode = s.argument(0);
  const char* where =
      mode == "2" ? "a directory that the user is asked for" : "a temporary directory";
  return std::string("unpack the bundled JVM into ") + where +
         (mode == "0" ? ", silently" : ", showing progress") +
         "; N1 is then 1 or 0, S1 the JVM file that it brings";
}

std::string iLaunch(const Statement& s) {
  if (wholeNumber(s.argument(0)) == 0) {
    return "launch with the embedded JVM file 0; where there is none this ends the run with 255";
  }
  return "launch the program with the embedded JVM file " + s.argument(0) + seconds(s.argument(1)) +
         "; its status becomes the result";
}

std::string jmp0(const std::vector<Statement>& statements, const Statement& s) {
  return "when " + s.argument(0) + " is 0, go on " + placeOf(statements, s.argument(1));
}

std::string launch(const Statement& s) {
  return "launch the program with the JVM file " + s.argument(0) + seconds(s.argument(1)) +
         "; its status becomes the result";
}

/// What commands without a jump do.
std::string commandInWords(const Statement& s) {
  switch (s.verb) {
    case Verb::FindJvm:
      return findJvm(s);
    case Verb::ILaunch:
      return iLaunch(s);
    case Verb::InitializeUi:
      return "show progress from here on";
    case Verb::InstallJvm:
      return installJvm(s);
    case Verb::Launch:
      return launch(s);
    case Verb::Set:
      return "set " + s.argument(0) + " to " + s.argument(1);
    case Verb::Verify:
      return verify(s);
    case Verb::ExecuteLauncher:
      return "become the embedded launcher " + s.argument(0) +
             ", which runs this installer's files";
    default:
      return "an unknown command, which ends the run with 255";
  }
}

}  // namespace

std::string inWords(const std::vector<Statement>& statements, std::size_t index) {
  const Statement& s = statements[index];
  if (s.verb == Verb::Label) return "the label " + s.word.substr(1);
  if (s.verb == Verb::Comment) return "(a comment)";
  if (s.verb == Verb::Goto) return "go on " + placeOf(statements, s.argument(0));
  if (s.verb == Verb::Jmp0) return jmp0(statements, s);
  return commandInWords(s);
}

}  // namespace vessant
