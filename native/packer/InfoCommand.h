// `vspack list` and `vspack info`: what an installer carries and is.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addListCommand(CLI::App& app, Session& session);
void addInfoCommand(CLI::App& app, Session& session);

}  // namespace vessant
