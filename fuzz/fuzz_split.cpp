// A command line for a program that is started without a shell.

#include "FuzzInput.h"
#include "launcher/linux/LinuxPlatformImpl.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::SString text = vessant::fuzz::textOf(data, size);
  vessant::StringDeque arguments;
  vessant::fuzz::require(vessant::splitCommandLine(arguments, text), "splitting never fails");
  std::size_t letters = 0;
  for (std::int32_t i = 0; i < arguments.count(); ++i) {
    vessant::fuzz::require(!arguments.get(i).isEmpty(), "empty arguments are dropped");
    letters += arguments.get(i).length();
  }
  vessant::fuzz::require(letters <= size, "no argument has more than was there");
  return 0;
}
