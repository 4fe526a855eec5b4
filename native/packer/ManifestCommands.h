// `vspack check` and `vspack pack`: what a manifest describes, looked at and written.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addCheckCommand(CLI::App& app, Session& session);

void addPackCommand(CLI::App& app, Session& session);

}  // namespace vessant
