// walk ROOT looks for bin/java below ROOT as the whole-disk search does and prints what it finds.

#include <cstdio>

#include "launcher/base/RunServices.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/jvm/FindFiles.h"

namespace {

class PrintPath : public vessant::FileFindListener {
 public:
  bool fileFound(const vessant::SString& path) override {
    std::puts(path.cString());
    return false;
  }
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  vessant::LauncherState state;
  state.console.silent = true;
  const vessant::LauncherServices services(state);
  vessant::StringDeque suffixes;
  suffixes.add("bin/java");
  PrintPath listener;
  vessant::FindFiles(services.run, suffixes, listener, "/tmp").navigate(arguments[1]);
  return 0;
}
