// `vspack check` and `vspack pack`: what a manifest describes, looked at and written.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

/// `check SUBJECT`: every finding on standard error, or as JSON on standard output; writes nothing.
/// The status is kFindings as soon as there is one, be it a warning.
void addCheckCommand(CLI::App& app, Session& session);

/// `pack MANIFEST`: checks as `check` does and writes the installer unless there is an error;
/// warnings are told and do not keep it from being written.
void addPackCommand(CLI::App& app, Session& session);

}  // namespace vessant
