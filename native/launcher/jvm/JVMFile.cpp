#include "launcher/jvm/JVMFile.h"

#include "launcher/jvm/HintSearch.h"
#include "launcher/jvm/JVMVerification.h"

namespace vessant {

std::unique_ptr<JVMMatch> JVMFile::verifyAt(const SString& home, JVMSearch& search) {
  return JVMVerification(*this, search).verifyAt(home);
}

bool JVMFile::runVerification(const SString& home, JVMSearch& search) {
  return JVMVerification(*this, search).run(home);
}

std::unique_ptr<JVMMatch> JVMFile::verifyOwnHome(JVMSearch& search) {
  // Warned of first: a file without properties may name no home either.
  if (!namesProperties(*this, search)) return nullptr;
  return verifyAt(tag(jvmtag::kHome), search);
}

bool JVMFile::matchOutput(const SString& output, const StringPairPtrDeque& expected, LogSink& log) {
  return readAnswer(output, expected, log).kind == JVMAnswer::Kind::Expected;
}

std::unique_ptr<JVMMatch> JVMFile::searchPlatformHints(JVMSearch& search) {
  return HintSearch(*this, search).byPlatformHints();
}

std::unique_ptr<JVMMatch> JVMFile::searchPathHints(JVMSearch& search) {
  return HintSearch(*this, search).byPathHints();
}

std::unique_ptr<JVMMatch> JVMFile::searchPlatformJVMPathHints(JVMSearch& search) {
  return HintSearch(*this, search).byPlatformPath();
}

}  // namespace vessant
