// Port attributes: speeds, duplex, negotiation, frame sizes, shutdown and
// trap modes, descriptions, and the FEC and port expansion of the 25G
// fibre ports that share one four-lane cage split 4x25G (25-28 on the
// default switch); 10G uplinks have no cage.
#include "sim/sim.h"

namespace sim {

namespace {

constexpr uint32_t kRootSlot = 0;
// Shut down by BPDU guard (reason 4) after a rogue switch was plugged in.
constexpr uint32_t kGuardedPort = 7;
constexpr uint32_t kBpduGuardReason = 4;

constexpr char kSpeedMode[] = "rpcclt_openapiIfSpeedModeGet";
constexpr char kDuplexMode[] = "rpcclt_openapiIfDuplexModeGet";
constexpr char kAutoNeg[] = "openapiIfAutoNegGet";
constexpr char kMaxFrame[] = "openapiIfMaxFrameSizeGet";
constexpr char kHeaderSize[] = "rpcclt_openapiIfEthernetHeaderSizeGet";
constexpr char kFecMode[] = "rpcclt_openapiIntfFECModeGet";
constexpr char kConfigMode[] = "rpcclt_openapiIntfExpandablePortConfigModeGet";
constexpr char kOperMode[] = "rpcclt_openapiIntfExpandablePortOperModeGet";
constexpr char kModeSupported[] = "rpcclt_openapiIntfExpandablePortModeSupportedGet";

// Speed-mode values: 1 auto, 2/3 100 half/full, 4/5 10 half/full,
// 7 1000 full, 10 10G, 12 25G.
constexpr uint32_t kSpeedAuto = 1;
constexpr uint32_t kCopperSpeeds[] = {1, 2, 3, 4, 5, 7};
constexpr uint32_t kFibreSpeeds[] = {7, 10, 12};
constexpr uint32_t kHalfDuplexSpeeds[] = {2, 4};

// Capability bits: 10/100 half and full, 1000 full, auto-negotiation on
// copper; 1G, 10G and 25G full on the fibre ports.
constexpr uint32_t kCopperCapabilities = 0x101F;
constexpr uint32_t kFibreCapabilities = 0x0190;

constexpr uint32_t kMinFrameSize = 1518;
constexpr uint32_t kMaxFrameSize = 9216;

// Expansion modes the cage can run: single 10G or 25G per lane, two 50G,
// one 40G or one 100G.
constexpr uint32_t kSupportedModes[] = {1, 2, 3, 4, 5};
constexpr uint32_t kLastExpandMode = 16;
// FEC values: 2 auto, 4 RS; 15 marks the end of the list, not a mode.
constexpr uint32_t kFecAuto = 2;
constexpr uint32_t kFecRs = 4;
constexpr uint32_t kFecLast = 15;

template <size_t N>
bool contains(const uint32_t (&list)[N], uint64_t v) {
  for (uint32_t x : list)
    if (x == v) return true;
  return false;
}

bool inCage(const Sim &s, uint64_t ifNum) { return layoutOf(s).inCage(ifNum); }

// The two copper ports before the last two form the first LAG.
bool isLagMember(const Sim &s, uint64_t ifNum) {
  uint32_t copper = layoutOf(s).copperPorts;
  return ifNum + 3 == copper || ifNum + 2 == copper;
}

std::string keyOf(uint64_t ifNum) { return std::to_string(ifNum); }

// Copper ports have no cage: what only the cage knows is unsupported there.
int unsupportedOnCopper(Sim &s, Call &c) {
  return findInterface(s, static_cast<uint32_t>(c.in(0))) ? -28 : -29;
}

// The other ports of the cage, first to last.
std::vector<uint32_t> peersOf(const Sim &s, uint64_t ifNum) {
  std::vector<uint32_t> peers;
  SwitchLayout layout = layoutOf(s);
  for (uint32_t p = layout.firstFibre(); p <= layout.ports(); ++p)
    if (p != ifNum) peers.push_back(p);
  return peers;
}

// A fixed speed turns negotiation off (the platform's 1), and the half
// duplex speeds change the configured duplex with them.
int speedSet(Sim &s, Call &c) {
  std::string key = keyOf(c.in(0));
  if (!s.stored(kSpeedMode, key)) return -29;
  uint64_t speed = c.in(1);
  bool allowed = layoutOf(s).isFibre(c.in(0)) ? contains(kFibreSpeeds, speed) : contains(kCopperSpeeds, speed);
  if (!allowed) return -22;
  s.put(kSpeedMode, key, {num(static_cast<int64_t>(speed))});
  s.put(kAutoNeg, key, {num(speed == kSpeedAuto ? 0 : 1)});
  s.put(kDuplexMode, key, {num(contains(kHalfDuplexSpeeds, speed) ? 0 : 1)});
  return 0;
}

int frameSizeSet(Sim &s, uint64_t ifNum, uint64_t frameSize) {
  std::string key = keyOf(ifNum);
  if (!s.stored(kMaxFrame, key)) return -29;
  if (frameSize < kMinFrameSize || frameSize > kMaxFrameSize) return -22;
  s.put(kMaxFrame, key, {num(static_cast<int64_t>(frameSize))});
  return 0;
}

// The MTU is the frame payload: the frame adds the Ethernet header.
int mtuSet(Sim &s, Call &c) {
  int64_t header = storedNum(s, kHeaderSize, keyOf(c.in(0)), 18);
  return frameSizeSet(s, c.in(0), c.in(1) + static_cast<uint64_t>(header));
}

int maxFrameSizeSet(Sim &s, Call &c) { return frameSizeSet(s, c.in(0), c.in(1)); }

int nextExpandablePort(Sim &s, Call &c) {
  for (uint32_t p = static_cast<uint32_t>(c.in(0)) + 1; p <= layoutOf(s).ports(); ++p) {
    if (!inCage(s, p) || !findInterface(s, p)) continue;
    c.setOut(0, p);
    return 0;
  }
  return -29;
}

// A new split is configured at once and runs after the next reload, so
// only the configured mode changes.
int expandModeSet(Sim &s, Call &c) {
  if (!inCage(s, c.in(0))) return unsupportedOnCopper(s, c);
  if (storedNum(s, kModeSupported, keyOf(c.in(1)), 0) != 1) return -22;
  s.put(kConfigMode, keyOf(c.in(0)), {num(static_cast<int64_t>(c.in(1)))});
  return 0;
}

int peersByMode(Sim &s, Call &c) {
  if (!inCage(s, c.in(0))) return unsupportedOnCopper(s, c);
  std::string list;
  std::vector<uint32_t> peers = peersOf(s, c.in(0));
  for (uint32_t p : peers) {
    if (!list.empty()) list += ',';
    list += std::to_string(p);
  }
  c.setOut(0, static_cast<uint64_t>(storedNum(s, kConfigMode, keyOf(c.in(0)), 0)));
  c.setOutText(1, list);
  c.setOut(2, peers.size());
  return 0;
}

// "Auto" settles on RS FEC with the 25G optics fitted.
int fecModeSet(Sim &s, Call &c) {
  if (!inCage(s, c.in(0))) return unsupportedOnCopper(s, c);
  uint64_t mode = c.in(1);
  if (mode >= kFecLast) return -22;
  int64_t configured = static_cast<int64_t>(mode);
  s.put(kFecMode, keyOf(c.in(0)), {num(configured), num(mode == kFecAuto ? kFecRs : configured)});
  return 0;
}

// Fibre ports run 25G in the cage, 10G as uplinks.
void seedSpeedAndDuplex(Sim &s, const std::string &key, bool fibre, bool up) {
  s.put(kSpeedMode, key, {num(!fibre ? (up ? 7 : 1) : layoutOf(s).cage ? 12 : 10)});
  s.put(kDuplexMode, key, {num(1)});
  // Operational duplex: 2 stands for none while the link is down.
  s.put("openapiIfDuplexGet", key, {num(up ? 1 : 2)});
  s.put(kAutoNeg, key, {num(fibre ? 1 : 0)});
  s.put("rpcclt_openapiIfCapabilitiesGet", key, {num(fibre ? kFibreCapabilities : kCopperCapabilities)});
  s.put("rpcclt_openapiIfActiveMediaTypeGet", key, {num(fibre ? 2 : 1)});
  s.put("rpcclt_openapiIfPauseStatusGet", key, {num(up && !fibre), num(up && !fibre)});
  s.put("rpcclt_openapiIfPortSpeedLaneCountGet", key, {num(1)});
}

void seedPortState(Sim &s, const std::string &key, uint32_t ifNum) {
  // The storage array behind port 25 runs jumbo frames.
  s.put(kMaxFrame, key, {num(ifNum == layoutOf(s).firstFibre() ? kMaxFrameSize : kMinFrameSize)});
  s.put(kHeaderSize, key, {num(18)});
  s.put("openapiIfAdminStateGet", key, {num(1)});
  s.put("rpcclt_openapiIfSoftShutdownStateGet", key, {num(0)});
  s.put("rpcclt_openapiIfLinkTrapGet", key, {num(1)});
  s.put("rpcclt_openapiIfDisableReasonGet", key, {num(ifNum == kGuardedPort ? kBpduGuardReason : 0)});
  s.put("rpcclt_openapiIfSpecialPortTypeGet", key, {num(isLagMember(s, ifNum) ? 2 : 1)});
}

// Each cage port runs single 25G on one lane; copper ports report no
// expansion mode.
void seedCage(Sim &s, const std::string &key, uint32_t ifNum) {
  bool fibre = inCage(s, ifNum);
  s.put(kConfigMode, key, {num(fibre ? 2 : 0)});
  s.put(kOperMode, key, {num(fibre ? 2 : 0)});
  if (!fibre) return;
  s.put(kFecMode, key, {num(kFecAuto), num(kFecRs)});
  s.put("rpcclt_openapiIfExpPortRootPortGet", key, {num(kRootSlot), num(layoutOf(s).firstFibre())});
  s.put("rpcclt_openapiIfExpPortOperModeLaneCountGet", key, {num(1)});
  s.put("rpcclt_openapiIfExpPortFirstPeerGet", key, {num(peersOf(s, ifNum).front())});
}

void seedPort(Sim &s, const Interface &i) {
  std::string key = keyOf(i.ifNum);
  seedSpeedAndDuplex(s, key, layoutOf(s).isFibre(i.ifNum), linkUp(s, i.ifNum));
  seedPortState(s, key, i.ifNum);
  seedCage(s, key, i.ifNum);
}

}  // namespace

// Active-media values as the platform numbers them.
struct Medium {
  const char *name;
  uint32_t value;
};
constexpr Medium kMedia[] = {{"copper", 1}, {"fiber", 2}};

bool knownMedia(const std::string &media) {
  for (const Medium &m : kMedia)
    if (media == m.name) return true;
  return false;
}

// Without a module the port has no active medium to report.
void removeTransceiver(Sim &s, uint32_t ifNum) {
  auto media = s.state.find("rpcclt_openapiIfActiveMediaTypeGet");
  if (media != s.state.end()) media->second.erase(keyOf(ifNum));
}

void insertTransceiver(Sim &s, uint32_t ifNum, const std::string &media) {
  for (const Medium &m : kMedia)
    if (media == m.name) s.put("rpcclt_openapiIfActiveMediaTypeGet", keyOf(ifNum), {num(m.value)});
}

void setDisableReason(Sim &s, uint32_t ifNum, uint32_t reason) {
  s.put("rpcclt_openapiIfDisableReasonGet", keyOf(ifNum), {num(reason)});
}

const CallRule kAttributeRules[] = {
    SIM_GET(rpcclt_openapiIfSpeedModeGet),
    SIM_GET(rpcclt_openapiIfDuplexModeGet),
    SIM_GET(rpcclt_openapiIfEthernetHeaderSizeGet),
    SIM_GET(rpcclt_openapiIfSoftShutdownStateGet),
    SIM_GET(rpcclt_openapiIfLinkTrapGet),
    SIM_CUSTOM(rpcclt_openapiIntfFECModeGet, unsupportedOnCopper),
    SIM_GET(rpcclt_openapiIntfExpandablePortConfigModeGet),
    SIM_GET(rpcclt_openapiIntfExpandablePortOperModeGet),
    SIM_GET(openapiIfDuplexGet),
    SIM_GET(openapiIfAutoNegGet),
    SIM_GET(openapiIfMaxFrameSizeGet),
    SIM_GET(openapiIfAdminStateGet),
    SIM_GET(rpcclt_openapiIfCapabilitiesGet),
    SIM_GET(rpcclt_openapiIfDisableReasonGet),
    SIM_GET(rpcclt_openapiIfActiveMediaTypeGet),
    SIM_GET(rpcclt_openapiIfPauseStatusGet),
    SIM_GET(rpcclt_openapiIfSpecialPortTypeGet),
    SIM_CUSTOM(rpcclt_openapiIfExpPortRootPortGet, unsupportedOnCopper),
    SIM_CUSTOM(rpcclt_openapiIfExpPortOperModeLaneCountGet, unsupportedOnCopper),
    SIM_CUSTOM(rpcclt_openapiIfExpPortFirstPeerGet, unsupportedOnCopper),
    SIM_GET(rpcclt_openapiIfPortSpeedLaneCountGet),
    SIM_CUSTOM(rpcclt_openapiIfSpeedSet, speedSet),
    SIM_SET(rpcclt_openapiIfAutoNegSet, openapiIfAutoNegGet, 1),
    SIM_CUSTOM(rpcclt_openapiIfMtuSizeSet, mtuSet),
    SIM_CUSTOM(rpcclt_openapiIfMtuSizeSetV2, mtuSet),
    SIM_CUSTOM(rpcclt_openapiIfMaxFrameSizeSet, maxFrameSizeSet),
    SIM_SET(rpcclt_openapiIfSoftShutdownStateSet, rpcclt_openapiIfSoftShutdownStateGet, 1),
    SIM_SET(rpcclt_openapiIfAdminStateSet, openapiIfAdminStateGet, 1),
    SIM_SET(rpcclt_openapiIfLinkTrapSet, rpcclt_openapiIfLinkTrapGet, 1),
    SIM_SET(rpcclt_openapiIfDescrSet, rpcclt_openapiIfDescrGet, 1),
    SIM_CUSTOM(rpcclt_openapiIntfExpandablePortNextGet, nextExpandablePort),
    SIM_GET(rpcclt_openapiIntfExpandablePortModeSupportedGet),
    SIM_CUSTOM(rpcclt_openapiIntfExpandablePortModeSet, expandModeSet),
    SIM_CUSTOM(rpcclt_openapiIntfExpandableModePeersGetByModeGet, peersByMode),
    SIM_CUSTOM(rpcclt_openapiIntfFECModeSet, fecModeSet),
};
const size_t kAttributeRuleCount = sizeof kAttributeRules / sizeof kAttributeRules[0];

void seedAttributes(Sim &s) {
  for (const Interface &i : s.interfaces)
    if (i.type == OPEN_INTF_TYPE_PHY) seedPort(s, i);
  for (uint32_t mode = 0; mode <= kLastExpandMode; ++mode)
    s.put(kModeSupported, keyOf(mode), {num(contains(kSupportedModes, mode) ? 1 : 0)});
}

}  // namespace sim
