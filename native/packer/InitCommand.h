// `vspack init`: from a jar to a directory that `vspack pack` turns into an installer.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addInitCommand(CLI::App& app, Session& session);

}  // namespace vessant
