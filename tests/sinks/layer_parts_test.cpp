#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "host/sinks/layer_names.h"
#include "host/sinks/layer_time.h"
#include "host/sinks/network_layer.h"
#include "host/sinks/text_layers/kml_lines.h"

namespace loom::test {
namespace {

TEST(LayerNames, AreUniqueWithinTheirRules) {
  const struct {
    std::vector<std::string> names;
    NameRules rules;
    std::vector<std::string> unique;
  } rows[] = {
      {{"CI", "ci", "Ci"}, {}, {"CI", "ci_2", "Ci_3"}},
      {{"fid", ""}, {}, {"fid", "unnamed"}},
      {{"小区", "基站", "2nd"}, {.most_bytes = 10, .ascii_only = true}, {"F__", "F___2", "F2nd"}},
      {{"PCCPCH_RSCP_1", "PCCPCH_RSCP_12", "PCCPCH_RSSI_1", "PCCPCH_RSCP"},
       {.most_bytes = 10, .ascii_only = true},
       {"PCCPCH_RS1", "PCCPCH_R12", "PCCPCH_R_2", "PCCPCH_RSC"}},
      {{"中文"}, {.most_bytes = 4}, {"中"}},
  };
  for (const auto& row : rows) EXPECT_EQ(row.unique, UniqueNames(row.names, row.rules));
  std::vector<std::string> many;
  for (int at = 0; at < 260; ++at) many.push_back("PCCPCH_RSCP_" + std::to_string(at % 7) + "x");
  const auto unique = UniqueNames(many, {.most_bytes = 10, .ascii_only = true});
  EXPECT_EQ(260u, std::set<std::string>(unique.begin(), unique.end()).size());
  for (const std::string& name : unique) EXPECT_GE(10u, name.size()) << name;
}

TEST(LayerTime, IsUtcInMillisecondsWithinTheCalendar) {
  const struct {
    double time_s;
    const char* text;
  } rows[] = {{1267776930.25, "2010-03-05T08:15:30.250Z"},    {-0.0004, "1970-01-01T00:00:00.000Z"},
              {-0.001, "1969-12-31T23:59:59.999Z"},           {951782399.9996, "2000-02-29T00:00:00.000Z"},
              {253402300799.999, "9999-12-31T23:59:59.999Z"}, {253402300800, ""},
              {-62167219200.0, "0000-01-01T00:00:00.000Z"},   {NAN, ""}};
  for (const auto& [time_s, expected] : rows) {
    char text[kUtcTextBytes + 8];
    EXPECT_EQ(expected, std::string(text, PutUtc(time_s, text))) << time_s;
  }
}

std::string LinesOf(double tile, const std::vector<std::tuple<GeoPoint, double, int>>& samples, std::int64_t& extra) {
  std::string text;
  KmlLines lines(tile, [&](const KmlLine& line) {
    text += line.value_class ? std::to_string(*line.value_class) : "-";
    for (const GeoPoint& point : line.points) {
      char place[64];
      std::snprintf(place, sizeof place, " %g,%g", point.longitude, point.latitude);
      text += place;
    }
    text += "; ";
  });
  for (const auto& [point, time_s, value_class] : samples) {
    if (!point.IsThere())
      lines.Break();
    else
      lines.Add(point, time_s, value_class < 0 ? std::nullopt : std::optional<std::size_t>(value_class));
  }
  lines.Break();
  extra = lines.ExtraPoints();
  return text;
}

TEST(KmlLines, JoinNeighboursOfOneClass) {
  const struct {
    double tile;
    std::vector<std::tuple<GeoPoint, double, int>> samples;
    const char* lines;
    std::int64_t extra;
  } rows[] = {
      {0, {{{1, 1}, 0, 0}, {{2, 1}, 1, 0}, {{3, 1}, 2, 1}, {{4, 1}, 3, 1}}, "0 1,1 2,1 3,1; 1 3,1 4,1; ", 1},
      {0, {{{1, 1}, 0, -1}, {{2, 1}, 1, 0}, {{3, 1}, 2, -1}}, "- 1,1 2,1; 0 2,1 3,1; ", 1},
      {0, {{{1, 1}, 0, 0}, {{2, 1}, 61, -1}, {{3, 1}, 62, -1}}, "0 1,1; - 2,1 3,1; ", 0},
      {0, {{{1, 1}, 0, 0}, {{}, 1, 0}, {{3, 1}, 2, 0}}, "0 1,1; 0 3,1; ", 0},
      {0, {{{179, 0}, 0, 0}, {{-179, 2}, 1, 0}}, "0 179,0 180,1; 0 -180,1 -179,2; ", 2},
      {0, {{{-179, 0}, 0, 0}, {{178, 3}, 1, 0}}, "0 -179,0 -180,1; 0 180,1 178,3; ", 2},
      {1, {{{0.5, 0}, 0, 0}, {{0.9, 0}, 1, 0}, {{1.1, 0}, 2, 0}}, "0 0.5,0 0.9,0 1.1,0; 0 1.1,0; ", 1},
  };
  for (const auto& row : rows) {
    std::int64_t extra = 0;
    EXPECT_EQ(row.lines, LinesOf(row.tile, row.samples, extra));
    EXPECT_EQ(row.extra, extra) << row.lines;
  }
}

TEST(SectorRing, IsClosedAroundItsAzimuth) {
  const GeoPoint cell{116.4, 60};
  const auto east = SectorRing(cell, 90, 60, 1000);
  EXPECT_EQ(cell, east.front());
  EXPECT_EQ(cell, east.back());
  for (std::size_t at = 1; at + 1 < east.size(); ++at) {
    const double x = (east[at].longitude - cell.longitude) * std::cos(cell.latitude * 3.14159265 / 180) * 111195;
    const double y = (east[at].latitude - cell.latitude) * 111195;
    EXPECT_NEAR(1000, std::hypot(x, y), 1);
    EXPECT_LE(std::abs(std::atan2(y, x)), 30.01 * 3.14159265 / 180);
  }
  const auto circle = SectorRing(cell, NAN, 65, 100);
  EXPECT_EQ(circle.front(), circle.back());
  EXPECT_NE(cell, circle.front());
}

}  // namespace
}  // namespace loom::test
