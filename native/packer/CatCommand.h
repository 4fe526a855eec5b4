// `vspack cat`: one file of an installer on standard output.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addCatCommand(CLI::App& app, Session& session);

}  // namespace vessant
