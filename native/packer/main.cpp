// vspack, the tool of those who make installers.

#include <filesystem>
#include <iostream>
#include <system_error>

#include <unistd.h>

#include "packer/Commands.h"
#include "packer/PendingWork.h"

int main(int argumentCount, char** arguments) {
  std::ios::sync_with_stdio(false);  // or each line of a long list is a call of its own
  const vessant::PendingWork pendingWork;
  std::error_code unknown;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  vessant::Session session{std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1, program.string()};
  return vessant::runPacker(argumentCount, arguments, session);
}
