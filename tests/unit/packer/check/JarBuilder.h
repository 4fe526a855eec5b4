// Small jars for tests.
#pragma once

#include <map>
#include <string>

namespace vessant::test {

/// The bytes of a zip file with these members.
[[nodiscard]] std::string jarBytes(const std::map<std::string, std::string>& members);

/// A tar file, compressed if wanted.
[[nodiscard]] std::string tarBytes(const std::map<std::string, std::string>& members,
                                   bool compressed = false);

/// The first bytes of an ELF program for a machine, one of elf.h's EM_ numbers.
[[nodiscard]] std::string elfBytes(int machine);

}  // namespace vessant::test
