// `vspack sums`: the SHA-256 sums of an installer and its files.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addSumsCommand(CLI::App& app, Session& session);

}  // namespace vessant
