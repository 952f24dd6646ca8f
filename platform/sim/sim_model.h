// The simulated switch's facts, each kept once. A call derives its answer
// from them; a setting or an event changes facts, and every answer that
// shows them follows. Times are milliseconds of simulated time since load.
#ifndef PLATFORM_SIM_SIM_MODEL_H
#define PLATFORM_SIM_SIM_MODEL_H

#include <stdint.h>

#include <array>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "switch_facts.h"

namespace sim {

// The switch's shape. Copper ports come first, then the fibre ports; with
// a cage the fibre ports are the four 25G lanes of one expandable port,
// else single 10G uplinks.
struct SwitchLayout {
  uint32_t copperPorts = 24;
  uint32_t fibrePorts = 4;
  uint32_t lags = 2;
  bool cage = true;

  // The LAGs' interface numbers start here, above the ports and the CPU,
  // and end below the routing interfaces'.
  static constexpr uint32_t kFirstLag = 650, kMostLags = 50;

  uint32_t ports() const { return copperPorts + fibrePorts; }
  // Why the model cannot seed a switch of this shape, or nullptr: its
  // devices sit on the first eight copper ports, its uplink is the first
  // fibre port, a cage has four lanes, and each LAG bundles two copper
  // ports counted down from the fourth-last, never port 1.
  const char *fault() const {
    if (copperPorts < 8) return "needs 8 copper ports or more";
    if (fibrePorts < 1) return "needs a fibre port";
    if (cage && fibrePorts != 4) return "has 4 fibre ports with a cage";
    if (uint64_t{copperPorts} + fibrePorts + 1 >= kFirstLag) return "has 648 ports at most";
    if (lags > kMostLags) return "has 50 LAGs at most";
    if (2 * uint64_t{lags} + 2 >= copperPorts) return "has too many LAGs for its copper ports (two each)";
    return nullptr;
  }
  uint32_t firstFibre() const { return copperPorts + 1; }
  bool isFibre(uint64_t ifNum) const { return ifNum > copperPorts && ifNum <= ports(); }
  bool inCage(uint64_t ifNum) const { return cage && isFibre(ifNum); }
};

// The nine interface counters, 32 bits wide as the hardware keeps them.
enum Counter { kInOctets, kInUcast, kInDiscards, kInErrors, kInUnknownProtos, kOutOctets, kOutUcast,
               kOutDiscards, kOutErrors, kCounterCount };

// What a linked port carries: octets per second each way, average frame
// sizes, and how many received frames in a million arrive damaged.
struct TrafficRates {
  uint64_t inOctetsPerSec = 3000, outOctetsPerSec = 2500;
  uint64_t inAvgFrame = 400, outAvgFrame = 400;
  uint64_t inErrorsPerMillion = 0;
};

// A run of power-saving (LPI) samples, one every `stepS` seconds, the link
// asleep (`idle`) or awake throughout; each sample's figures follow from
// its place in the history since its clear (`place` is the run's first
// sample's, from 0) and its time. `sumBefore` holds the percents of every sample
// before the run, the dropped ones too, for the running average.
struct LpiRun {
  uint64_t place = 0;
  int64_t firstTime = 0;  // seconds since 1970 on the switch's clock
  uint32_t stepS = 300;
  uint64_t count = 0;
  bool idle = false;
  uint64_t sumBefore = 0;
};

// Configuration values the switch keeps per port and only reports back.
struct PortSettings {
  std::string description;
  uint32_t maxFrame = facts::kMaxFrameSize.least;
  uint32_t softShutdown = 0;
  uint32_t linkTrap = 1;
  uint32_t expandConfigMode = 0, expandOperMode = 0;  // cage ports only
  uint32_t fecConfig = 2, fecOper = 4;                // cage ports only
  std::string timeRange;
  uint32_t ledColor = 2, ledBrightness = 80;  // ports with a colour LED only
};

// Port MAC locking of one port.
struct PmlPort {
  uint32_t mode = 0;  // 1 locked
  uint32_t dynamicLimit = facts::kLockDynamicLimit.most, staticLimit = 20;
  uint32_t dynamicMaxLimit = facts::kLockDynamicLimit.most, staticMaxLimit = facts::kLockStaticLimit.most;
  uint32_t trapMode = 0, ddisableMode = 0, stickyMode = 0;
  uint32_t trapFrequency = 0, ageTime = 0;
  std::string lastViolationMac;
  uint32_t lastViolationVlan = 0;
  std::map<uint32_t, uint32_t> vlanDynamicLimit;  // per VLAN of the switch
};

// Green Ethernet of one copper port.
struct GreenPort {
  uint32_t energyDetect = 0, shortReachAuto = 0, shortReachForced = 0;
  uint32_t eeeAdmin = 1, txIdleTime = 100, txWakeTime = 17;
  bool partnerEee = true;  // the link partner speaks EEE over LLDP
  // LPI events and durations ({high, low} words) at the last clear; what
  // the link slept since then adds to them.
  uint64_t txEvents = 0, rxEvents = 0;
  uint64_t txDuration[2] = {0, 0}, rxDuration[2] = {0, 0};
  uint64_t lpiMs = 0;         // asleep since load, until the port's `settledMs`
  uint64_t lpiMsAtClear = 0;  // `lpiMs` at the last clear
  int64_t statsClearedS = 0;  // simulated seconds of the last clear (negative: before load)
  std::deque<LpiRun> history;
};

struct Port {
  uint32_t ifNum = 0;
  // Link: up when enabled, not D-Disabled, with a transceiver and a partner.
  bool adminEnabled = true;
  bool partner = false;  // a cable with a live link partner
  uint32_t medium = 1;   // active medium: 0 none (no transceiver), 1 copper, 2 fiber
  int64_t lastChangeS = 0;  // switch uptime at the last link change
  // Configured speed (platform speed-mode value, 1 auto): the duplex and
  // negotiation follow from it; what was negotiated shows while up.
  uint32_t speedMode = 1;
  uint32_t cableM = 0;  // the copper cable plugged in, in metres; 0 none
  // D-Disable: the reason while shut (its cause follows from it), and when
  // it tripped.
  uint32_t disableReason = 0;
  int64_t tripAtMs = 0;
  // Traffic: counters as of `settledMs`, and rates while the link is up.
  TrafficRates rates;
  std::array<uint64_t, kCounterCount> counters{};
  int64_t settledMs = 0;
  uint64_t wrapAtOctets = 0;  // the received octets an announced wrap comes at, 0 none
  // Power: draw up and down, and the saving (mW for ms) until `settledMs`.
  int64_t drawUpMw = 560, drawDownMw = 95;
  uint64_t savedMwh = 0;   // at the last clear or load, plus what was settled
  uint64_t savedMwMs = 0;  // remainder below one mWh
  uint32_t lagMember = 0;  // the LAG's interface number, 0 none
  PortSettings settings;
  PmlPort pml;
  GreenPort green;
};

struct PmlVlan {
  uint32_t dynamicLimit = facts::kLockDynamicLimit.most, ddisableMode = 0, trapMode = 0, mode = 0;
};

struct PmlEntry {
  uint32_t ifNum = 0;
  std::string mac;  // canonical: upper-case pairs joined by ":"
  uint32_t vlan = 0;
  bool sticky = false;
  bool learned = false;  // static entries that came from learning
  uint32_t stream = 0;   // stream bindings
};

struct Pml {
  uint32_t globalAdmin = 1, vlanAdmin = 1;
  std::map<uint32_t, PmlVlan> vlans;
  std::vector<PmlEntry> statics, dynamics, streams;
};

struct Errdisable {
  uint32_t intervalS = 300;
  int64_t intervalSetAtMs = 0;       // a change applies from then on, never before
  std::vector<bool> recovers;         // per cause of the switch's cause table
  std::vector<int64_t> enabledAtMs;  // when each was last set to recover
};

struct Green {
  uint32_t energyDetect = 1, shortReach = 0, eee = 1;
  uint64_t totalLpiTime = 5843211;
  uint32_t savingPercent = 38;
  uint32_t sampleIntervalMin = 5, maxSamples = facts::kLpiMaxSamples.most;
  int64_t nextSampleMs = 300000;
  std::string features = "Energy-Detect Short-Reach EEE EEE-LPI-History Power-Estimates";
};

struct Model {
  SwitchLayout layout;
  std::map<uint32_t, Port> ports;  // the physical ports by number
  std::vector<uint32_t> vlans;     // configured VLANs
  Errdisable errdisable;
  Pml pml;
  Green green;
  uint32_t ledMode = 1;
  std::string osVersion = "4.2.1.7";
  std::array<int64_t, 4> apiVersion = {1, 27, 0, 4};
};

}  // namespace sim

#endif
