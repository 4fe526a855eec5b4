// A class path: the input's first line is the text of an option, the rest a list file, which the
// option may name and which also stands for the side files.

#include "FuzzInput.h"
#include "launcher/launch/JavaArguments.h"
#include "launcher/launch/JvmTags.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::fuzz::FirstLine input(data, size);
  const vessant::fuzz::InputFile list(input.rest, input.restSize);
  const vessant::SString path(list.path());
  vessant::fuzz::QuietRun run;
  vessant::TagFile tags;
  tags.addValue("CLASSPATH_SEPARATOR", ":");
  vessant::JvmTags jvm(tags);
  const vessant::ClassPathBuilder builder(run.services.launch, jvm);
  vessant::SString classPath;
  builder.addClassPathOption(classPath, input.line);
  builder.addClassPathOption(classPath, "@" + path);
  builder.appendClassPathEntry(classPath, builder.readClassPathFile(path, true));
  vessant::StringDeque lines;
  vessant::fuzz::require(vessant::readLines(path, lines), "the list can be read");
  vessant::StringDeque entries;
  entries.add(input.line);
  static_cast<void>(builder.build(entries, path, false));
  static_cast<void>(vessant::sideFilePath(input.line, vessant::sidefile::kClassPath));
  return 0;
}
