// The text of the exception that an operation ends with.
#pragma once

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "support/FakeRun.h"

namespace vessant::test {

/// The message of the LauncherException that `operation` throws; a failure when it throws none.
template <class Operation>
[[nodiscard]] std::string thrownMessage(Operation&& operation) {
  try {
    std::forward<Operation>(operation)();
  } catch (const LauncherException& error) {
    return str(error.message());
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

}  // namespace vessant::test
