#include "host/simulation/handset.h"

#include <array>
#include <cmath>

namespace loom::simulation {
namespace {

constexpr double kSignalSpacing_s = 0.002;
constexpr double kTdLost_dbm = -98.0;
constexpr double kTdBack_dbm = -90.0;
constexpr int kStepsUntilLost = 3;
constexpr int kStepsUntilBack = 6;
constexpr std::uint64_t kBroadcastEvery = 20;  // measurements
constexpr std::uint64_t kServiceEvery = 10;
constexpr std::uint64_t kDataTestEvery = 60;
constexpr std::array<std::int32_t, 5> kDualModeModels{kModelRv2230, kModelRv2210, kModelKm4430, kModelRv2220,
                                                      kModelKm2242};

std::int32_t ModelOf(SimulatedNetwork network, std::int8_t device) {
  const auto turn = static_cast<std::size_t>(device - 1);
  if (network == SimulatedNetwork::kLte) return turn % 2 == 0 ? kModelTn300Lte : kModelH500Lte;
  return kDualModeModels[turn % kDualModeModels.size()];
}

}  // namespace

Handset::Handset(SimulatedNetwork network, std::int8_t device, double interval_s, std::uint64_t seed)
    : network_(network),
      device_(device),
      model_code_(ModelOf(network, device)),
      interval_s_(interval_s),
      random_(seed),
      system_(network == SimulatedNetwork::kTdScdma ? System::kTd
              : network == SimulatedNetwork::kGsm   ? System::kGsm
                                                    : System::kLte),
      call_timer_s_(random_.Between(5.0, 20.0)) {}

const Procedures& Handset::Current() const {
  return system_ == System::kTd ? kTdProcedures : system_ == System::kGsm ? kGsmProcedures : kLteProcedures;
}

CTestdataBase Handset::Start(std::int32_t kind, const Moment& moment, RecordSink& sink) const {
  CTestdataBase record = sink.Start(kind, device_, moment);
  if (kind == kRecordHandset) record.model_code = model_code_;
  if (system_ != System::kLte) record.network_mode = system_ == System::kTd ? kNetworkModeTdScdma : kNetworkModeGsm;
  return record;
}

// True when the handset is on another network from now on.
bool Handset::ChangeSystem(const Surroundings& surroundings) {
  if (network_ != SimulatedNetwork::kTdScdma) return false;
  const double td_dbm = surroundings.td.front().level_dbm;
  const bool on_td = system_ == System::kTd;
  const bool wishes = on_td ? td_dbm < kTdLost_dbm : td_dbm > kTdBack_dbm;
  system_wish_ = wishes ? system_wish_ + 1 : 0;
  if (system_wish_ < (on_td ? kStepsUntilLost : kStepsUntilBack)) return false;
  system_ = on_td ? System::kGsm : System::kTd;
  system_wish_ = 0;
  serving_.Leave();
  return true;
}

// True when a call begins or ends now.
bool Handset::AdvanceCall() {
  call_timer_s_ -= interval_s_;
  if (call_timer_s_ > 0.0) return false;
  in_call_ = !in_call_;
  call_timer_s_ = in_call_ ? random_.Between(40.0, 90.0) : random_.Between(10.0, 30.0);
  return true;
}

void Handset::PutMessage(const Signal& signal, const Moment& moment, RecordSink& sink) {
  CTestdataBase record = Start(kRecordHandset, moment, sink);
  const auto bytes = MessageBytes(signal);
  record.message_id = signal.message_id;
  record.layer3_name = signal.message;
  record.message_text = signal.message;
  record.layer3_lines = signal.lines;
  record.direction = signal.direction;
  record.channel = signal.channel;
  record.raw_length = static_cast<std::int32_t>(bytes.size());
  if (system_ == System::kTd)
    record.raw_bytes = bytes;
  else
    record.raw_message = AUTOTEST::CAutoBuffer(bytes);
  sink.Put(record);
}

void Handset::Signalling(std::span<const Signal> signals, Moment& moment, RecordSink& sink) {
  for (const Signal& signal : signals) {
    moment.time_s += kSignalSpacing_s;
    if (signal.message.empty()) {
      event_of_measurement_ = signal.event_id;
      continue;
    }
    PutMessage(signal, moment, sink);
    if (signal.event_id < 0) continue;
    CTestdataBase event = Start(kRecordEvent, moment, sink);
    event.event_id = signal.event_id;
    sink.Put(event);
  }
}

void Handset::Measure(const Moment& moment, std::span<const CellLevel> levels, RecordSink& sink) {
  CTestdataBase record = Start(kRecordHandset, moment, sink);
  record.network_mode_changed = system_changed_ ? 1 : 0;
  record.event_id = event_of_measurement_;
  const Findings findings{serving_.cell(), serving_.level_dbm(), levels, in_call_, count_};
  if (system_ == System::kTd) td_.Fill(record, findings, random_);
  if (system_ == System::kGsm) gsm_.Fill(record, findings, random_);
  if (system_ == System::kLte) lte_.Fill(record, findings, random_);
  sink.Put(record);
  system_changed_ = false;
  event_of_measurement_ = -1;
  ++count_;
}

void Handset::PutService(const Moment& moment, RecordSink& sink) {
  CTestdataBase record = Start(kRecordDataService, moment, sink);
  ServiceBlock service;
  service.service_kind = static_cast<std::int16_t>(service_kind_);
  service.ie2410 = static_cast<std::int32_t>(count_);
  service_kind_ = (service_kind_ + 1) % 4;
  const std::int32_t rate = 128 * (50 + random_.Below(900));
  if (service.service_kind < 2) {
    service.kind01 = ServiceKind01{.ie2411 = 1'000'000 + rate,
                                   .ie2412 = 5'000,
                                   .ie2413 = 12.5f,
                                   .ie2414 = rate,
                                   .ie2415 = rate / 2,
                                   .ie2417 = rate / 3,
                                   .ie2416 = rate / 4,
                                   .ie2418 = 0};
  } else if (service.service_kind == 2) {
    service.kind2 = ServiceKind2{.ie2424 = rate * 1.0,
                                 .ie2425 = rate * 0.5,
                                 .ie2426 = 10,
                                 .ie2421 = 3,
                                 .ie2420 = 4,
                                 .ie2419 = 2'000'000,
                                 .ie2422 = rate * 0.25,
                                 .ie2423 = rate * 0.125};
  } else {
    service.kind3 = ServiceKind3{"http://example.com/", "200 OK", 1, 32, random_.Below(300), 80.0f, 40.0f, 60.0f, 0.0f};
  }
  record.service = &service;
  sink.Put(record);
}

void Handset::PutDataTest(const Moment& moment, RecordSink& sink) {
  DataTestFirst first;
  first.ie21265 = 1;
  first.ie21266 = static_cast<std::int32_t>(count_);
  first.ie21271 = 1024.0 * random_.Below(4096);
  first.ie21272 = 1024.0 * random_.Below(4096);
  CTestdataBase record = Start(kRecordDataTest1, moment, sink);
  record.data_test_first = &first;
  sink.Put(record);
  DataTestSecond second;
  second.ie21287 = 2;
  second.ie21288 = random_.Below(100);
  CTestdataBase further = Start(kRecordDataTest2, moment, sink);
  further.data_test_second = &second;
  sink.Put(further);
}

void Handset::Step(const Moment& start, const Surroundings& surroundings, RecordSink& sink) {
  Moment moment = start;
  system_changed_ = ChangeSystem(surroundings);
  const std::span<const CellLevel> levels = system_ == System::kTd    ? surroundings.td
                                            : system_ == System::kGsm ? surroundings.gsm
                                                                      : surroundings.lte;
  const Serving::Change change = serving_.Update(levels);
  // The first record of a handset is a measurement: it makes the stream that everything else joins.
  if (change == Serving::Change::kNew) {
    Signalling(in_call_ ? Current().handover : Current().cell_change, moment, sink);
  }
  Measure(moment, levels, sink);
  if (change == Serving::Change::kFirst && count_ > 1) Signalling(Current().system_change, moment, sink);
  if (AdvanceCall()) Signalling(in_call_ ? Current().call_setup : Current().call_end, moment, sink);
  if (!in_call_ && count_ % kBroadcastEvery == 0) Signalling(Current().broadcast, moment, sink);
  moment.time_s += kSignalSpacing_s;
  if (in_call_ && count_ % kServiceEvery == 0) PutService(moment, sink);
  if (count_ % kDataTestEvery == 0) PutDataTest(moment, sink);
}

}  // namespace loom::simulation
