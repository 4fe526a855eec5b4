// The commands that make Javas known to installers: `vspack jvm` writes a JVM file, for a Java that
// is there or for a range of them; `vspack bundle-jvm` makes a runtime a program that unpacks it.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addJvmCommand(CLI::App& app, Session& session);
void addBundleJvmCommand(CLI::App& app, Session& session);

}  // namespace vessant
