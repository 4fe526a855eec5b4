// `vspack pack`: writes an installer.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addPackCommand(CLI::App& app, Session& session);

}  // namespace vessant
