// A manifest, as vspack reads it before it packs anything.

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "packer/Finding.h"
#include "packer/Manifest.h"
#include "packer/check/TagCheck.h"
#include "packer/check/TagText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::fuzz::InputFile input(data, size);
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  vessant::fuzz::QuietRun run;
  vessant::Findings findings;
  try {
    const vessant::TagText text =
        vessant::readTagText("manifest", bytes, vessant::TextKind::Manifest, findings);
    vessant::checkTags(text, vessant::TextKind::Manifest, {}, findings);
    static_cast<void>(vessant::readManifest(vessant::SString(input.path()), {}, run.services.log));
  } catch (const vessant::LauncherException&) {
  }
  for (const vessant::Finding& finding : findings.sorted()) {
    static_cast<void>(vessant::lineOf(finding));
  }
  return 0;
}
