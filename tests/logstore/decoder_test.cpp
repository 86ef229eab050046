#include "components/decoder.h"

#include "components/factory.h"
#include "components/records/blocks.h"
#include "tests/logstore/log_files.h"

namespace loom::testing {
namespace {

std::vector<std::string> Lines(std::string_view text) {
  CTestdataBase record(false, 0);
  record.layer3_lines = text;
  std::deque<CString> lines{"left over"};
  CDecoder decoder;
  EXPECT_EQ(!text.empty(), decoder.DTDetailDecode(nullptr, record, lines));
  std::vector<std::string> texts;
  for (const CString& line : lines) texts.push_back(line.str());
  return texts;
}

using Texts = std::vector<std::string>;

TEST(DetailDecode, PutsEveryBraceOnALineOfItsOwnWithoutIndentation) {
  EXPECT_EQ((Texts{"message setup :", "{", "lai", "{", "lac '12'H", "},", "text \"{x}\",", "last 1", "}"}),
            Lines("message setup : {\r\n  lai {\n    lac '12'H\n  }, text \"{x}\",\n\n  last 1 }\n"));
}

TEST(DetailDecode, EmptyLineFollowsTheCloseOfATransportChannelList) {
  EXPECT_EQ(
      (Texts{"{", "ul-AddReconfTransChInfoList", "{", "{", "crc-Size crc0", "}", "},", "", "next", "{", "}", "}"}),
      Lines("{\nul-AddReconfTransChInfoList {\n{\ncrc-Size crc0\n}\n},\nnext {\n}\n}"));
}

TEST(DetailDecode, RecordWithoutMessageHasNoLines) { EXPECT_TRUE(Lines("").empty()); }

// A record with a serving cell, coded; the header is read.
struct CodedRecord {
  explicit CodedRecord(bool marked = false, std::size_t cut = 0) {
    CTestdataBase original(false, 0);
    CIE_SCell_Para cell;
    cell.uarfcn = 10055;
    original.serving_cell = &cell;
    original.fails_to_decode = marked;
    bytes = EncodeRecord(original);
    record.arena = &arena;
    DecodeHeader(bytes, 500, record, arena);
    record.encoded_blocks = record.encoded_blocks.first(record.encoded_blocks.size() - cut);
  }
  std::pmr::monotonic_buffer_resource arena;
  std::vector<std::byte> bytes;
  CTestdataBase record{false, 0};
};

TEST(Decoder, DecodesInPlaceAndIntoAnotherRecord) {
  const auto decoder = CFactory::Instance().CreateDecoder();
  CodedRecord in_place;
  ASSERT_TRUE(decoder->Decode(160, in_place.record, in_place.record));
  ASSERT_NE(nullptr, in_place.record.serving_cell);
  EXPECT_EQ(10055, in_place.record.serving_cell->uarfcn);

  CodedRecord source;
  CTestdataBase target(false, 0);
  ASSERT_TRUE(decoder->Decode(160, source.record, target));
  EXPECT_EQ(10055, target.serving_cell->uarfcn);
  EXPECT_EQ(nullptr, source.record.serving_cell);
}

TEST(Decoder, MarkedAndLyingRecordsFailWithANote) {
  const auto decoder = CFactory::Instance().CreateDecoder();
  for (const bool marked : {true, false}) {
    Notes notes;
    const NotesScope scope(notes);
    CodedRecord coded(marked, marked ? 0 : 3);
    EXPECT_FALSE(decoder->Decode(160, coded.record, coded.record));
    ASSERT_EQ(1U, notes.Count("record not decoded"));
    const std::uint64_t blocks_at = coded.record.encoded_position_bytes;
    EXPECT_GT(blocks_at, 500U) << "counted from the start of the file";
    if (marked) continue;
    // A lying block is told at its value, behind tag and length.
    const std::string& what = notes.kinds().front().places.front().what;
    EXPECT_EQ(0U, what.find("byte " + std::to_string(blocks_at + 6) + ": ")) << what;
  }
}

}  // namespace
}  // namespace loom::testing
