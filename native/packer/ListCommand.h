// `vspack list`: the files that an installer carries.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addListCommand(CLI::App& app, Session& session);

}  // namespace vessant
