// `vspack diff`: what changed between two installers.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addDiffCommand(CLI::App& app, Session& session);

}  // namespace vessant
