// vspack check: what is wrong, before a user finds out.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addCheckCommand(CLI::App& app, Session& session);

}  // namespace vessant
