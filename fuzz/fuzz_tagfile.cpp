// A tag file: whatever can be read can be written, and reads back as the same tags and values.

#include <cstdlib>

#include <unistd.h>

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "launcher/tagfile/TagFile.h"

namespace {

using vessant::TagFile;
using vessant::TagTable;

void checkSame(const TagFile& a, const TagFile& b) {
  const TagTable& left = a.tags();
  const TagTable& right = b.tags();
  if (left.count() != right.count()) std::abort();
  TagTable::Place i = TagTable::kNowhere;
  TagTable::Place j = TagTable::kNowhere;
  while ((i = left.next(i)) != TagTable::kNowhere && (j = right.next(j)) != TagTable::kNowhere) {
    const std::int32_t count = left.valueCount(i);
    if (left.name(i) != right.name(j) || count != right.valueCount(j)) std::abort();
    for (std::int32_t k = 0; k < count; ++k) {
      if (left.value(i, k) != right.value(j, k)) std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::StdFile stream = vessant::fuzz::streamOf(data, size);
  if (stream == nullptr) return 0;
  vessant::fuzz::QuietRun run;
  vessant::LogSink& log = run.services.log;
  TagFile tags;
  try {
    tags.load(stream.get(), "input", 0, TagFile::kToEndOfFile, log);
  } catch (const vessant::LauncherException&) {
    return 0;
  }
  char path[] = "/tmp/vessant-fuzz-XXXXXX";
  ::close(::mkstemp(path));
  tags.save(path);
  const TagFile again(path, log);
  ::unlink(path);
  checkSame(tags, again);
  return 0;
}
