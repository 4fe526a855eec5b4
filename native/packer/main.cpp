// vspack, the tool of those who make installers.

#include <filesystem>
#include <iostream>
#include <system_error>

#include <unistd.h>

#include "packer/Commands.h"
#include "packer/PendingFiles.h"

int main(int argumentCount, char** arguments) {
  const vessant::PendingFiles pendingFiles;
  std::error_code unknown;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  vessant::Session session{std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1, program.string()};
  return vessant::runPacker(argumentCount, arguments, session);
}
