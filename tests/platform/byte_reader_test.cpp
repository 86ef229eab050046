#include "platform/byte_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace loom {
namespace {

TEST(ByteReader, ReadsBackWhatTheWriterWrote) {
  std::vector<std::byte> bytes;
  ByteWriter out(bytes);
  out.U8(0xFE);
  out.I16(-2);
  out.U32(0x01020304);
  out.I64(-5'000'000'000);
  out.F32(-0.5f);
  out.F64(1e300);
  out.Text("ab");
  out.Align(8);
  EXPECT_EQ(32u, out.Size());
  out.PatchU32(3, 0xCAFEBABE);

  ByteReader in(bytes);
  EXPECT_EQ(-2, in.I8());
  EXPECT_EQ(-2, in.I16());
  EXPECT_EQ(0xCAFEBABEu, in.U32());
  EXPECT_EQ(-5'000'000'000, in.I64());
  EXPECT_EQ(-0.5f, in.F32());
  EXPECT_EQ(1e300, in.F64());
  EXPECT_EQ("ab", in.Text(2));
  EXPECT_TRUE(in.Has(3));
  EXPECT_FALSE(in.Has(4));
  in.Skip(3);
  EXPECT_TRUE(in.AtEnd());
}

TEST(ByteReader, WireOrderIsLittleEndianUnlessSwapped) {
  const std::string_view bytes("\x01\x02\x03\x04\x05\x06\x07\x08", 8);
  EXPECT_EQ(0x04030201u, ByteReader(bytes).U32());
  ByteReader swapped(bytes, 0, ByteOrder::kBig);
  EXPECT_EQ(0x0102u, swapped.U16());
  EXPECT_EQ(0x0304u, swapped.Part(2).U16());  // parts inherit the order
  swapped.SetOrder(ByteOrder::kLittle);
  EXPECT_EQ(0x0605u, swapped.U16());
}

TEST(ByteReader, RunningOutNamesThePositionInTheFileAndReadsNothing) {
  const std::string_view bytes("\x01\x02\x03\x04\x05\x06\x07", 7);
  const std::function<void(ByteReader&)> reads[] = {
      [](ByteReader& in) { in.U64(); },    [](ByteReader& in) { in.F64(); },
      [](ByteReader& in) { in.Bytes(8); }, [](ByteReader& in) { in.Skip(SIZE_MAX); },
      [](ByteReader& in) { in.Part(8); },
  };
  for (const auto& read : reads) {
    ByteReader in(bytes, 1000);
    in.U8();
    EXPECT_THROW(read(in), FormatError);
    EXPECT_EQ(1001u, in.Position());
  }
  ByteReader in(bytes, 1000);
  in.Skip(5);
  try {
    in.Part(2).U32("block length");
    FAIL() << "no error";
  } catch (const FormatError& error) {
    EXPECT_EQ(1005u, error.position_bytes());
    EXPECT_STREQ("at byte 1005: block length needs 4 bytes, 2 are left", error.what());
  }
}

}  // namespace
}  // namespace loom
