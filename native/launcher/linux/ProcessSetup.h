// The parts of a process that it inherits from whoever starts it.
#pragma once

namespace vessant {

/// Makes them fit for a launcher: the descriptors 0 to 2 are open, so that no file of the
/// launcher's or of a program's takes their place, and a child's end can be waited for.
void prepareProcess();

}  // namespace vessant
