// `vspack verify`: whether an installer is whole.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addVerifyCommand(CLI::App& app, Session& session);

}  // namespace vessant
