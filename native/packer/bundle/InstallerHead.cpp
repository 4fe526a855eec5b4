#include "packer/bundle/InstallerHead.h"

#include <algorithm>
#include <string_view>

#include <elf.h>

#include "packer/WrittenText.h"

namespace vessant {
namespace {

/// To be filled in.
constexpr std::string_view kScript =
    R"sh(#!/bin/sh
# vspack bundle-jvm unpacks=<FILES>:<BYTES>
# Unpacks the Java runtime that follows the last line of this script into the current directory.
# The file "jvm" tells of it, once it is whole and has run.
PATH=${PATH:+$PATH:}/usr/bin:/bin
umask 022
made=

fail() {
    printf 'The bundled Java runtime %s\n' "$1" >&2
    clean_up
    exit 1
}
clean_up() {
    [ -z "$made" ] || rm -rf jre jvm.new
}
reason() {
    printf '%s\n' "$problems" | sed -n '/./{p;q;}'
}
stop() {
    clean_up
    trap - "$1"
    kill -s "$1" $$
}

<MACHINE>[ -e jre ] || [ -e jvm ] && fail "is not unpacked into $PWD: there is a jre or jvm already."
for signal in HUP INT TERM; do
    trap "stop $signal" "$signal"
done
made=yes
problems=$({ tail -n +<LINE> "$0" | <UNPACK>tar -xof -; } 2>&1) ||
    fail "could not be unpacked into $PWD (is the disk full?): $(reason)"
[ -f jvm.new ] || fail "is not complete: the installer is damaged and must be fetched again."
answer=$(jre/bin/java -version 2>&1)
status=$?
case $status in
0) ;;
126) fail "may not be run in $PWD: programs are not allowed there (a noexec disk?)." ;;
*)
    printf '%s\n' "$answer" >&2
    fail "does not run on this machine (status $status)."
    ;;
esac
mv jvm.new jvm || fail "could not be made known in $PWD."
exit 0
)sh";

constexpr std::string_view kMachineCheck = R"sh(case $(uname -m) in
<PATTERN>) ;;
*) fail "is not made for this machine: it needs <NAME>, and this is $(uname -m)." ;;
esac
)sh";

struct Machine {
  std::uint16_t number;
  bool isBigEndian;
  /// The name of the machine itself comes first.
  const char* pattern;
};

// As the Linux kernel names them. A 64-bit kernel runs the programs of its 32-bit ancestor.
constexpr Machine kMachines[] = {
    {EM_X86_64, false, "x86_64 | amd64"},
    {EM_386, false, "i?86 | x86_64 | amd64"},
    {EM_AARCH64, false, "aarch64 | arm64"},
    {EM_ARM, false, "arm* | aarch64"},
    {EM_RISCV, false, "riscv*"},
    {EM_PPC64, false, "ppc64le"},
    {EM_PPC64, true, "ppc64"},
    {EM_S390, true, "s390x"},
    {EM_LOONGARCH, false, "loongarch64"},
};

std::string machineCheck(const RuntimeFacts& facts) {
  const std::string pattern = unamePattern(facts.machine, facts.isBigEndian);
  if (pattern.empty()) return "";
  const std::string name = pattern.substr(0, pattern.find(' '));
  return filled(kMachineCheck, {{"PATTERN", pattern}, {"NAME", name}});
}

}  // namespace

std::string unamePattern(std::uint16_t machine, bool isBigEndian) {
  for (const Machine& known : kMachines) {
    if (known.number == machine && known.isBigEndian == isBigEndian) return known.pattern;
  }
  return "";
}

std::string installerHead(const RuntimeFacts& facts) {
  const std::string check = machineCheck(facts);
  const auto lines = std::count(kScript.begin(), kScript.end(), '\n') +
                     std::count(check.begin(), check.end(), '\n');
  return filled(kScript, {{"FILES", std::to_string(facts.files)},
                          {"BYTES", std::to_string(facts.bytes)},
                          {"MACHINE", check},
                          {"UNPACK", facts.isCompressed ? "gzip -dc | " : ""},
                          {"LINE", std::to_string(lines + 1)}});
}

}  // namespace vessant
