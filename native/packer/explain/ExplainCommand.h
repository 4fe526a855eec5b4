// `vspack explain`: what an installer would do here, without running it.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addExplainCommand(CLI::App& app, Session& session);

}  // namespace vessant
