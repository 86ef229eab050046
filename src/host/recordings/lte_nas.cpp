#include "host/recordings/lte_nas.h"

#include "host/recordings/layer3.h"

namespace loom::recordings {
namespace {

struct NasType {
  std::uint8_t type;
  std::string_view name;
  std::int32_t event_id;
  std::int8_t direction;
};

// clang-format off
// EPS mobility management.
constexpr NasType kMobilityTypes[] = {
    {65, "Attach request", kEventAttach, kUp},
    {66, "Attach accept", kEventAttached, kDown},
    {67, "Attach complete", kNoEvent, kUp},
    {68, "Attach reject", kEventAttachRefused, kDown},
    {69, "Detach request", kEventDetach, -1},
    {70, "Detach accept", kNoEvent, -1},
    {72, "Tracking area update request", kEventTrackingUpdate, kUp},
    {73, "Tracking area update accept", kEventTrackingUpdated, kDown},
    {74, "Tracking area update complete", kNoEvent, kUp},
    {75, "Tracking area update reject", kEventTrackingRefused, kDown},
    {76, "Extended service request", kNoEvent, kUp},
    {77, "Control plane service request", kNoEvent, kUp},
    {78, "Service reject", kNoEvent, kDown},
    {79, "Service accept", kNoEvent, kDown},
    {80, "GUTI reallocation command", kNoEvent, kDown},
    {81, "GUTI reallocation complete", kNoEvent, kUp},
    {82, "Authentication request", kNoEvent, kDown},
    {83, "Authentication response", kNoEvent, kUp},
    {84, "Authentication reject", kNoEvent, kDown},
    {85, "Identity request", kNoEvent, kDown},
    {86, "Identity response", kNoEvent, kUp},
    {92, "Authentication failure", kNoEvent, kUp},
    {93, "Security mode command", kNoEvent, kDown},
    {94, "Security mode complete", kNoEvent, kUp},
    {95, "Security mode reject", kNoEvent, kUp},
    {96, "EMM status", kNoEvent, -1},
    {97, "EMM information", kNoEvent, kDown},
    {98, "Downlink NAS transport", kNoEvent, kDown},
    {99, "Uplink NAS transport", kNoEvent, kUp},
    {100, "CS service notification", kNoEvent, kDown},
    {104, "Downlink generic NAS transport", kNoEvent, kDown},
    {105, "Uplink generic NAS transport", kNoEvent, kUp},
};

// EPS session management.
constexpr NasType kSession[] = {
    {193, "Activate default EPS bearer context request", kEventBearer, kDown},
    {194, "Activate default EPS bearer context accept", kEventBearerActive, kUp},
    {195, "Activate default EPS bearer context reject", kEventBearerRefused, kUp},
    {197, "Activate dedicated EPS bearer context request", kEventBearer, kDown},
    {198, "Activate dedicated EPS bearer context accept", kEventBearerActive, kUp},
    {199, "Activate dedicated EPS bearer context reject", kEventBearerRefused, kUp},
    {201, "Modify EPS bearer context request", kNoEvent, kDown},
    {202, "Modify EPS bearer context accept", kNoEvent, kUp},
    {203, "Modify EPS bearer context reject", kNoEvent, kUp},
    {205, "Deactivate EPS bearer context request", kEventBearerEnd, kDown},
    {206, "Deactivate EPS bearer context accept", kNoEvent, kUp},
    {208, "PDN connectivity request", kNoEvent, kUp},
    {209, "PDN connectivity reject", kNoEvent, kDown},
    {210, "PDN disconnect request", kNoEvent, kUp},
    {211, "PDN disconnect reject", kNoEvent, kDown},
    {212, "Bearer resource allocation request", kNoEvent, kUp},
    {213, "Bearer resource allocation reject", kNoEvent, kDown},
    {214, "Bearer resource modification request", kNoEvent, kUp},
    {215, "Bearer resource modification reject", kNoEvent, kDown},
    {217, "ESM information request", kNoEvent, kDown},
    {218, "ESM information response", kNoEvent, kUp},
    {219, "Notification", kNoEvent, kDown},
    {220, "ESM dummy message", kNoEvent, -1},
    {232, "ESM status", kNoEvent, -1},
    {233, "Remote UE report", kNoEvent, kUp},
    {234, "Remote UE report response", kNoEvent, kDown},
    {235, "ESM data transport", kNoEvent, -1},
};
// clang-format on

constexpr std::uint8_t kMobilityDiscriminator = 7;
constexpr std::uint8_t kSessionDiscriminator = 2;
constexpr std::size_t kSecurityHeaderBytes = 6;  // discriminator, authentication code (4), sequence number

// Security header types of EPS mobility management messages.
constexpr std::uint8_t kPlainMessage = 0;
constexpr std::uint8_t kIntegrityProtected = 1;
constexpr std::uint8_t kIntegrityProtectedNew = 3;
constexpr std::uint8_t kServiceRequest = 12;  // and above: the whole message is the header

NasMessage Find(std::span<const NasType> types, std::uint8_t type) {
  for (const NasType& known : types)
    if (known.type == type) return {known.name, known.event_id, known.direction, false};
  return {};
}

}  // namespace

NasMessage IdentifyLteNas(std::span<const std::byte> message) {
  const auto at = [&](std::size_t offset) { return static_cast<std::uint8_t>(message[offset]); };
  if (message.size() < 2) return {};
  const std::uint8_t discriminator = at(0) & 0x0F;
  if (discriminator == kSessionDiscriminator) return message.size() < 3 ? NasMessage{} : Find(kSession, at(2));
  if (discriminator != kMobilityDiscriminator) return {};
  const std::uint8_t security = at(0) >> 4;
  if (security == kPlainMessage) return Find(kMobilityTypes, at(1));
  if (security >= kServiceRequest) return {"Service request", kNoEvent, kUp, false};
  if (security != kIntegrityProtected && security != kIntegrityProtectedNew) return {{}, kNoEvent, -1, true};
  const auto inner =
      message.size() > kSecurityHeaderBytes ? message.subspan(kSecurityHeaderBytes) : std::span<const std::byte>();
  const bool is_wrapped_again = !inner.empty() && (static_cast<std::uint8_t>(inner[0]) >> 4) != kPlainMessage &&
                                (static_cast<std::uint8_t>(inner[0]) & 0x0F) == kMobilityDiscriminator;
  return is_wrapped_again ? NasMessage{} : IdentifyLteNas(inner);
}

}  // namespace loom::recordings
