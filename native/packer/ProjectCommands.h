// The commands that write what an installer is packed from: `vspack init` the whole directory for a
// jar, `vspack jvm` a JVM file for a Java that is there or for a range of them, `vspack bundle-jvm`
// a runtime that unpacks itself.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addInitCommand(CLI::App& app, Session& session);

void addJvmCommand(CLI::App& app, Session& session);
void addBundleJvmCommand(CLI::App& app, Session& session);

}  // namespace vessant
