#include "host/recordings/track.h"

#include "tests/recordings/recording_test.h"

namespace loom::test {
namespace {

using namespace recordings;

constexpr std::int64_t kStart_ns = static_cast<std::int64_t>(kStart_s) * 1'000'000'000;

TEST(IsoTimes, WithFractionsAndOffsets) {
  EXPECT_EQ(kStart_ns, TimeOfIsoText("2024-05-17T01:30:00Z"));
  EXPECT_EQ(kStart_ns + 250'000'000, TimeOfIsoText("2024-05-17T01:30:00.25"));
  EXPECT_EQ(kStart_ns, TimeOfIsoText("2024-05-17T09:30:00+08:00"));
  EXPECT_EQ(kStart_ns, TimeOfIsoText("2024-05-16 21:00:00-0430"));
  for (const char* const text :
       {"", "2024-05-17", "2024-13-17T01:30:00Z", "2024-05-17T01:30:00+8", "2024-05-17T0a:30:00"})
    EXPECT_FALSE(TimeOfIsoText(text)) << text;
}

TEST(Track, StraightOnBetweenFixesOfAtMostAMinute) {
  const Track track({{kStart_ns + 60'000'000'000, 40.0, 116.5},
                     {kStart_ns, 39.0, 116.0},
                     {kStart_ns + 121'000'000'000, 41.0, 117.0},
                     {kStart_ns + 131'000'000'000, 41.0, 179.9},
                     {kStart_ns + 141'000'000'000, 41.0, -179.9}});
  const auto at = [&](std::int64_t second) { return track.At(kStart_ns + second * 1'000'000'000); };
  EXPECT_DOUBLE_EQ(39.25, at(15)->latitude);
  EXPECT_DOUBLE_EQ(116.125, at(15)->longitude);
  EXPECT_DOUBLE_EQ(116.0, at(0)->longitude);
  EXPECT_FALSE(at(61));
  EXPECT_TRUE(at(121));
  EXPECT_FALSE(at(-1));
  EXPECT_FALSE(at(142));
  EXPECT_NEAR(180.0, std::abs(at(136)->longitude), 1e-9);
}

class Tracks : public RecordingTest {
 protected:
  // Longitudes of records from half a second before the start, a second apart.
  std::vector<double> Longitudes(const std::string& track) {
    std::ofstream(folder_.native() / "track") << track;
    options_.track = folder_.File("track");
    RecordingBuilder recording;
    for (int i = 0; i < 4; ++i) recording.Put(0xB0C0, i - 0.5, RecordingBuilder::Rrc(101, 6, "x"));
    Make(recording);
    return All("longitude", -255.0);
  }
};

TEST_F(Tracks, OfGpx) {
  const auto longitudes = Longitudes(
      "<?xml version='1.0'?><x:gpx xmlns:x='urn:x'><x:trk><x:trkseg>"
      "<x:trkpt lat='39.5' lon='116'><x:ele>4</x:ele><x:time> 2024-05-17T01:30:00Z </x:time></x:trkpt>"
      "<x:trkpt lat='39.5' lon='117'></x:trkpt><x:trkpt lat='95' "
      "lon='117'><x:time>2024-05-17T01:30:01Z</x:time></x:trkpt>"
      "<x:trkpt lat='39.5' lon='118'><x:time>2024-05-17T01:30:02Z</x:time></x:trkpt></x:trkseg></x:trk></x:gpx>");
  EXPECT_EQ((std::vector{-255.0, 116.5, 117.5, -255.0}), longitudes);
  EXPECT_EQ(2U, notes_.Count("track point that is not used"));
}

TEST_F(Tracks, OfNmea) {
  const auto longitudes = Longitudes(
      "$GPRMC,013000.00,A,3930.000,N,11600.000,E,0.0,0.0,170524,,,A*56\r\n"
      "$GPGGA,013001.00,3930.000,N,11630.000,E,1,08,1.0,50.0,M,0.0,M,,\r\n"
      "$GPRMC,013002.00,A,3930.000,N,11900.000,E,0.0,0.0,170524,,,A*00\r\n"
      "$GPRMC,013002.00,V,,,,,,,170524,,,N\r\nnoise\r\n");
  EXPECT_EQ((std::vector{-255.0, 116.25, -255.0, -255.0}), longitudes);
  EXPECT_EQ(3U, notes_.Count("track point that is not used"));
}

TEST_F(Tracks, OfAnotherTimeIsTold) {
  const auto longitudes = Longitudes(
      "<gpx><trk><trkseg><trkpt lat='39.5' lon='116'><time>2024-05-17T01:00:00Z</time></trkpt>"
      "<trkpt lat='39.5' lon='117'><time>2024-05-17T01:00:10Z</time></trkpt></trkseg></trk></gpx>");
  EXPECT_EQ(std::vector(4, -255.0), longitudes);
  ASSERT_EQ(1U, notes_.Count("track point that is not used"));
  EXPECT_EQ("the track ends 1789 s before the first record", notes_.kinds()[0].places.at(0).what);
}

TEST_F(Tracks, WhatIsNoTrackIsRefused) {
  EXPECT_THROW(Longitudes("no track at all"), FileError);
  EXPECT_THROW(Longitudes("<gpx><trk><trkseg><trkpt lat='39.5' lon='116'/></trkseg></trk></gpx>"), FileError);
}

}  // namespace
}  // namespace loom::test
