#include "launcher/jvm/EnvironmentPath.h"

#include "launcher/base/PathUtil.h"

namespace vessant {

void splitEnvironmentPath(StringDeque& list, const SString& name, const Platform& platform) {
  list.clear();
  const SString value = name.isEmpty() ? SString() : platform.getEnvironmentVariable(name);
  if (value.isEmpty()) return;
  SString::Size start = 0;
  while (true) {
    const SString::Size separator = value.find(kPathListSeparator, start);
    if (separator == SString::npos) break;
    list.add(value.substr(start, separator - start));
    start = separator + 1;
  }
  list.add(value.substr(start));
}

}  // namespace vessant
