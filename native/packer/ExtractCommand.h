// `vspack extract`: the files of an installer, without running it.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addExtractCommand(CLI::App& app, Session& session);

}  // namespace vessant
