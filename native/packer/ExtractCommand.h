// `vspack extract` and `vspack cat`: the files of an installer, without running it.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addCatCommand(CLI::App& app, Session& session);
void addExtractCommand(CLI::App& app, Session& session);

}  // namespace vessant
