// `vspack jvm`: writes a JVM file, for a Java that is there or for a range of them.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addJvmCommand(CLI::App& app, Session& session);

}  // namespace vessant
