// `vspack info`: what an installer is.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addInfoCommand(CLI::App& app, Session& session);

}  // namespace vessant
