// A manifest, as vspack reads it before it packs anything.

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "packer/Finding.h"
#include "packer/Manifest.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::fuzz::InputFile input(data, size);
  vessant::Findings findings;
  try {
    static_cast<void>(vessant::readManifest(input.path(), {}, findings));
  } catch (const vessant::LauncherException&) {
  }
  for (const vessant::Finding& finding : findings.sorted()) {
    static_cast<void>(vessant::lineOf(finding));
  }
  return 0;
}
