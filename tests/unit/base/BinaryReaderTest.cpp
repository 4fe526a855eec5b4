// Numbers and bytes of a binary stream, with its end noticed one byte late.
#include <cstdint>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "support/FakeRun.h"
#include "unit/base/StreamOf.h"

namespace vessant::test {
namespace {

using namespace std::string_view_literals;

template <class Read>
std::string messageOf(Read read) {
  try {
    read();
  } catch (const LauncherException& exception) {
    return str(exception.message());
  }
  return "(no exception)";
}

TEST(BinaryReader, ReadsUnsignedNumbersMostSignificantByteFirst) {
  const std::pair<std::string_view, std::uint32_t> table[] = {{"\0\0\1\2"sv, 258U},
                                                              {"\0\0\0\0"sv, 0U},
                                                              {"\x80\0\0\0"sv, 0x80000000U},
                                                              {"\xca\x82\xca\x82"sv, 0xCA82CA82U},
                                                              {"\xff\xff\xff\xff"sv, 0xFFFFFFFFU}};
  for (const auto& [bytes, number] : table) {
    const StreamOf stream(bytes);
    EXPECT_EQ(readInt32(stream.get(), "message"), number);
  }
}

TEST(BinaryReader, ReadsSignedShortNumbers) {
  const std::pair<std::string_view, int> table[] = {{"\xff\xfe"sv, -2},
                                                    {"\0\0"sv, 0},
                                                    {"\1\2"sv, 258},
                                                    {"\x7f\xff"sv, 32767},
                                                    {"\x80\0"sv, -32768}};
  for (const auto& [bytes, number] : table) {
    const StreamOf stream(bytes);
    EXPECT_EQ(readInt16(stream.get(), "message"), number);
  }
}

TEST(BinaryReader, ReadsOneNumberAfterTheOther) {
  const StreamOf stream("\0\0\0\1\0\2\0\0\0\3"sv);
  EXPECT_EQ(readInt32(stream.get(), "message"), 1U);
  EXPECT_EQ(readInt16(stream.get(), "message"), 2);
  EXPECT_EQ(readInt32(stream.get(), "message"), 3U);
}

TEST(BinaryReader, TakesTheEndOfTheFileForOneByteOf255) {
  const StreamOf three("\1\2\3"sv);
  EXPECT_EQ(readInt32(three.get(), "message"), 0x010203FFU);
  const StreamOf one("\1"sv);
  EXPECT_EQ(readInt16(one.get(), "message"), 0x01FF);
}

TEST(BinaryReader, ThrowsTheCallersMessageWhenMoreIsMissing) {
  for (const std::string_view bytes : {""sv, "\1"sv, "\1\2"sv}) {
    const StreamOf stream(bytes);
    EXPECT_EQ(messageOf([&] { readInt32(stream.get(), "Unable to read the number."); }),
              "Unable to read the number.")
        << bytes.size();
  }
  const StreamOf empty("");
  EXPECT_EQ(messageOf([&] { readInt16(empty.get(), "Nothing left."); }), "Nothing left.");
}

TEST(BinaryReader, ANumberBehindTheNoticedEndThrows) {
  const StreamOf stream("\1\2\3"sv);
  EXPECT_EQ(readInt32(stream.get(), "message"), 0x010203FFU);
  EXPECT_EQ(messageOf([&] { readInt16(stream.get(), "message"); }), "message");
}

TEST(BinaryReader, CountsTheBytesItStores) {
  const StreamOf stream("abcdef");
  std::vector<unsigned char> buffer(8, '?');
  EXPECT_EQ(readBytes(stream.get(), buffer.data(), 0), 0);
  EXPECT_EQ(readBytes(stream.get(), buffer.data(), 4), 4);
  EXPECT_EQ(buffer, (std::vector<unsigned char>{'a', 'b', 'c', 'd', '?', '?', '?', '?'}));
  EXPECT_EQ(readBytes(stream.get(), buffer.data(), 2), 2) << "exactly up to the end";
  EXPECT_EQ(readBytes(stream.get(), buffer.data(), 8), 1) << "the end, as a byte";
  EXPECT_EQ(buffer[0], 255);
  EXPECT_EQ(buffer[1], 'f');
  EXPECT_EQ(readBytes(stream.get(), buffer.data(), 8), 0) << "the end was noticed";
}

TEST(BinaryReader, KeepsNulAndHighBytes) {
  const StreamOf stream("\0\xff\x80\r\n"sv);
  std::vector<unsigned char> buffer(5);
  EXPECT_EQ(readBytes(stream.get(), buffer.data(), 5), 5);
  EXPECT_EQ(buffer, (std::vector<unsigned char>{0, 0xff, 0x80, '\r', '\n'}));
}

TEST(BinaryReader, AReadErrorIsTheEndOfTheFile) {
  const FailingStream stream;
  ASSERT_NE(stream.get(), nullptr);
  unsigned char buffer[16] = {};
  EXPECT_EQ(readBytes(stream.get(), buffer, 16), 1);
  EXPECT_EQ(buffer[0], 255);
  EXPECT_EQ(readBytes(stream.get(), buffer, 16), 0);
  EXPECT_EQ(messageOf([&] { readInt32(stream.get(), "message"); }), "message");
}

}  // namespace
}  // namespace vessant::test
