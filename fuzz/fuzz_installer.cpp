// An installer of whatever origin, as vspack looks into it.

#include <algorithm>

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "packer/Finding.h"
#include "packer/Installer.h"
#include "packer/check/Package.h"
#include "packer/check/PackageCheck.h"

namespace {

void readFiles(const vessant::Installer& installer) {
  for (const vessant::FileIndexEntry& entry : installer.entries()) {
    if (installer.isWithin(entry)) static_cast<void>(installer.textOf(entry));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::fuzz::InputFile input(data, size);
  vessant::Findings findings;
  try {
    const vessant::Installer installer(input.path());
    if (!installer.isInstaller()) return 0;
    readFiles(installer);
    vessant::Package package = vessant::packageOf(installer, findings);
    vessant::checkPackage(package, {}, findings);
  } catch (const vessant::LauncherException&) {
  }
  for (const vessant::Finding& finding : findings.sorted()) {
    static_cast<void>(vessant::lineOf(finding));
  }
  return 0;
}
