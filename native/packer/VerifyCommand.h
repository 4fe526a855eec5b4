// `vspack verify` and `vspack sums`: whether an installer is whole, and still what it was.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addSumsCommand(CLI::App& app, Session& session);
void addVerifyCommand(CLI::App& app, Session& session);

}  // namespace vessant
