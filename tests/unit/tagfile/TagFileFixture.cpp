#include "TagFileFixture.h"

#include "launcher/base/Handles.h"

namespace vessant::test {

Tags tagsOf(const TagFile& file) {
  Tags tags;
  const TagTable& table = file.tags();
  TagTable::Place place = TagTable::kNowhere;
  while ((place = table.next(place)) != TagTable::kNowhere) {
    std::vector<std::string> values;
    for (std::int32_t i = 0; i < table.valueCount(place); ++i) {
      values.emplace_back(table.value(place, i));
    }
    tags.emplace_back(table.name(place), std::move(values));
  }
  return tags;
}

void TagFileFixture::read(std::string_view text) {
  readStretch(text, 0, TagFile::kToEndOfFile);
}

void TagFileFixture::readStretch(std::string_view text, std::uint32_t offset, std::int64_t length) {
  const StdFile stream = openFile(SString(tree.file("source", text)), OpenMode::Read);
  ASSERT_NE(stream, nullptr);
  file.load(stream.get(), "source", offset, length, log);
}

Tags TagFileFixture::tagsIn(std::string_view text) {
  const TagFile fresh(SString(tree.file("source", text)), log);
  return tagsOf(fresh);
}

std::string TagFileFixture::saved() const {
  const std::string path = tree.path("saved.tag");
  file.save(SString(path));
  return readFile(path);
}

}  // namespace vessant::test
