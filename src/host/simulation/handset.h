#pragma once

#include <cstdint>
#include <span>

#include "host/simulation/measurement.h"
#include "host/simulation/radio.h"
#include "host/simulation/random.h"
#include "host/simulation/record_sink.h"
#include "host/simulation/signalling.h"
#include "host/simulation/simulator.h"

namespace loom::simulation {

// The levels of all networks at one point, strongest first; a network that the drive does not have is empty.
struct Surroundings {
  std::span<const CellLevel> td;
  std::span<const CellLevel> gsm;
  std::span<const CellLevel> lte;
};

// One test handset: it stays on a cell, makes calls, changes cells and networks, and reports all of it.
class Handset {
 public:
  // `device` counts from 1.
  Handset(SimulatedNetwork network, std::int8_t device, double interval_s, std::uint64_t seed);

  void Step(const Moment& moment, const Surroundings& surroundings, RecordSink& sink);

 private:
  enum class System { kTd, kGsm, kLte };

  const Procedures& Current() const;
  bool ChangeSystem(const Surroundings& surroundings);
  bool AdvanceCall();
  void Measure(const Moment& moment, std::span<const CellLevel> levels, RecordSink& sink);
  void Signalling(std::span<const Signal> signals, Moment& moment, RecordSink& sink);
  void PutMessage(const Signal& signal, const Moment& moment, RecordSink& sink);
  void PutService(const Moment& moment, RecordSink& sink);
  void PutDataTest(const Moment& moment, RecordSink& sink);
  CTestdataBase Start(std::int32_t kind, const Moment& moment, RecordSink& sink) const;

  SimulatedNetwork network_;
  std::int8_t device_;
  std::int32_t model_code_;
  double interval_s_;
  Random random_;
  System system_;
  bool system_changed_ = false;  // with the next measurement
  int system_wish_ = 0;          // steps during which the other network was the better one
  Serving serving_;
  bool in_call_ = false;
  double call_timer_s_;  // until the call begins or ends
  std::int32_t event_of_measurement_ = -1;
  std::uint64_t count_ = 0;
  std::int32_t service_kind_ = 0;
  TdMeasurement td_;
  GsmMeasurement gsm_;
  LteMeasurement lte_;
};

}  // namespace loom::simulation
