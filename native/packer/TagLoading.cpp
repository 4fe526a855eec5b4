#include "packer/TagLoading.h"

#include <cstdio>

#include "launcher/base/Handles.h"
#include "packer/NoLog.h"
#include "packer/Text.h"

namespace vessant {

void loadTags(TagFile& tags, const std::string& name, const std::string& text) {
  if (text.empty()) return;
  std::string bytes = text;
  const StdFile stream(::fmemopen(bytes.data(), bytes.size(), "rb"));
  if (stream == nullptr) throw failure(name + ": cannot be read");
  NoLog log;
  tags.load(stream.get(), sstr(name), 0, static_cast<std::int64_t>(bytes.size()), log);
}

}  // namespace vessant
