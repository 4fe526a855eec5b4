// `vspack explain`: what an installer would do here, without running it.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

/// `explain INSTALLER`: looks at this machine as a run would, and changes nothing. With `--try` the
/// Java homes' own programs run, and the verification class lies in the temporary directory
/// meanwhile; a signal takes both away before it ends vspack.
void addExplainCommand(CLI::App& app, Session& session);

}  // namespace vessant
