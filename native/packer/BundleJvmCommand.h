// `vspack bundle-jvm`: makes a Java runtime a program that unpacks it, for an installer to carry.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

void addBundleJvmCommand(CLI::App& app, Session& session);

}  // namespace vessant
