#include <expat.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "host/recordings/track.h"
#include "platform/characters.h"
#include "platform/error.h"
#include "platform/number.h"

namespace loom::recordings {
namespace {

// Collects the points of a track while the parser goes through the document.
class GpxReader {
 public:
  GpxReader(const CString& path, Findings& findings) : path_(path), findings_(findings), parser_(Create()) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(
        parser_.get(),
        [](void* self, const char* name, const char** attributes) {
          static_cast<GpxReader*>(self)->Begin(name, attributes);
        },
        [](void* self, const char* name) { static_cast<GpxReader*>(self)->End(name); });
    XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char* text, int length) {
      static_cast<GpxReader*>(self)->Text({text, static_cast<std::size_t>(length)});
    });
    // Tracks have no entities of their own, and their declarations are the way to make a small file large.
    XML_SetEntityDeclHandler(
        parser_.get(), [](void* self, const char*, int, const char*, int, const char*, const char*, const char*,
                          const char*) { XML_StopParser(static_cast<GpxReader*>(self)->parser_.get(), XML_FALSE); });
  }

  std::vector<TrackFix> Read(std::string_view bytes) {
    constexpr std::size_t kPieceBytes = 1U << 20;
    for (bool is_last = false; !is_last; bytes.remove_prefix(std::min(bytes.size(), kPieceBytes))) {
      is_last = bytes.size() <= kPieceBytes;
      const std::string_view piece = bytes.substr(0, kPieceBytes);
      if (XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), is_last) == XML_STATUS_OK) continue;
      const auto position = static_cast<std::uint64_t>(XML_GetCurrentByteIndex(parser_.get()));
      const std::string reason = XML_ErrorString(XML_GetErrorCode(parser_.get()));
      if (fixes_.empty()) throw FileError(path_, position, "is no GPX document: " + reason);
      findings_.Add(Finding::kTrackPoint, path_, position, "the document ends here: " + reason);
      break;
    }
    return std::move(fixes_);
  }

 private:
  struct Free {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  static XML_Parser Create() {
    const XML_Parser parser = XML_ParserCreate(nullptr);
    if (parser == nullptr) throw Error("no memory for reading a track");
    return parser;
  }

  static std::string_view LocalName(std::string_view name) { return name.substr(name.rfind(':') + 1); }

  void Begin(std::string_view name, const char** attributes) {
    name = LocalName(name);
    if (name == "trkpt" || name == "rtept") {
      is_in_point_ = true;
      latitude_ = longitude_ = NAN;
      time_.clear();
      for (; *attributes != nullptr; attributes += 2) {
        const std::string_view attribute = attributes[0];
        if (attribute == "lat") latitude_ = ParseDouble(attributes[1]).value_or(NAN);
        if (attribute == "lon") longitude_ = ParseDouble(attributes[1]).value_or(NAN);
      }
    }
    is_in_time_ = is_in_point_ && name == "time";
  }

  void Text(std::string_view text) {
    constexpr std::size_t kLongestTime = 64;
    if (is_in_time_ && time_.size() < kLongestTime) time_ += text;
  }

  void End(std::string_view name) {
    name = LocalName(name);
    is_in_time_ = false;
    if (name != "trkpt" && name != "rtept") return;
    is_in_point_ = false;
    const auto time_ns = TimeOfIsoText(Trimmed(time_));
    if (time_ns && std::abs(latitude_) <= 90.0 && std::abs(longitude_) <= 180.0) {
      fixes_.push_back({*time_ns, latitude_, longitude_});
    } else {
      findings_.Add(Finding::kTrackPoint, path_, static_cast<std::uint64_t>(XML_GetCurrentByteIndex(parser_.get())),
                    time_ns ? "no position" : "no time");
    }
  }

  const CString& path_;
  Findings& findings_;
  std::unique_ptr<XML_ParserStruct, Free> parser_;
  std::vector<TrackFix> fixes_;
  bool is_in_point_ = false;
  bool is_in_time_ = false;
  double latitude_ = NAN;
  double longitude_ = NAN;
  std::string time_;
};

}  // namespace

std::vector<TrackFix> ReadGpx(const CString& path, std::string_view bytes, Findings& findings) {
  return GpxReader(path, findings).Read(bytes);
}

}  // namespace loom::recordings
