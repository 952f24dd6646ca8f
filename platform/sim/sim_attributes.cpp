// Port attributes: speeds, duplex, negotiation, frame sizes, shutdown and
// trap modes, descriptions, and the FEC and port expansion of the 25G
// fibre ports that share one four-lane cage split 4x25G (25-28 on the
// default switch); 10G uplinks have no cage.
#include "sim/sim.h"
#include "switch_facts.h"

namespace sim {

namespace {

constexpr uint32_t kRootSlot = 0;

// Speed-mode values with the capability bit a port needs for each, the
// line rate and whether the link runs half duplex.
struct SpeedMode {
  uint32_t value, capability, mbps;
  bool half;
};
consteval uint32_t speed(std::string_view name) { return facts::codeOf(facts::kSpeeds, name); }
constexpr uint32_t kSpeedAuto = speed("portctrl_portspeed_auto_neg"), kAutoNegBit = 0x1000;
constexpr uint32_t kSpeed1000Full = speed("portctrl_portspeed_full_1000sx");
constexpr uint32_t kSpeed10G = speed("portctrl_portspeed_full_10gsx"), kSpeed25G = speed("portctrl_portspeed_full_25gsx");
constexpr SpeedMode kSpeedModes[] = {
    {kSpeedAuto, kAutoNegBit, 0, false},
    {speed("portctrl_portspeed_half_100tx"), 0x0004, 100, true},
    {speed("portctrl_portspeed_full_100tx"), 0x0008, 100, false},
    {speed("portctrl_portspeed_half_10t"), 0x0001, 10, true},
    {speed("portctrl_portspeed_full_10t"), 0x0002, 10, false},
    {kSpeed1000Full, 0x0010, 1000, false},
    {kSpeed10G, 0x0080, 10000, false},
    {kSpeed25G, 0x0100, 25000, false},
};
// Negotiation as the platform numbers it, and the operational duplex that
// stands for none while the link is down.
constexpr uint32_t kAutoNegOn = 0, kAutoNegOff = 1;
constexpr uint32_t kNoDuplex = 2;

// Capability bits: 10/100 half and full, 1000 full, auto-negotiation on
// copper; 1G, 10G and 25G full on the fibre ports.
constexpr uint32_t kCopperCapabilities = 0x101F;
constexpr uint32_t kFibreCapabilities = 0x0190;

// A mask sets only bits the switch's capability table gives a meaning.
constexpr bool onlyKnownBits(uint32_t mask) {
  for (const facts::CapabilityBit &b : facts::kCapabilityBits) mask &= ~b.bit;
  return mask == 0;
}
static_assert(onlyKnownBits(kCopperCapabilities) && onlyKnownBits(kFibreCapabilities));

const SpeedMode *speedModeOf(uint64_t value) {
  for (const SpeedMode &m : kSpeedModes)
    if (m.value == value) return &m;
  return nullptr;
}

constexpr uint32_t kHeaderSize = 18;
constexpr uint32_t kMinFrameSize = facts::kMaxFrameSize.least;
constexpr uint32_t kMaxFrameSize = facts::kMaxFrameSize.most;

// Expansion modes the cage can run: single 10G or 25G per lane, two 50G,
// one 40G or one 100G.
constexpr uint32_t kSupportedModes[] = {1, 2, 3, 4, 5};
constexpr uint32_t kSingle25G = facts::codeOf(facts::kExpandModes, "single_25g");
constexpr uint32_t kLastExpandMode = facts::codeOf(facts::kExpandModes, "invalid");
// "last" marks the end of the FEC list, not a mode.
constexpr uint32_t kFecAuto = facts::codeOf(facts::kFecModes, "port_fec_auto");
constexpr uint32_t kFecRs = facts::codeOf(facts::kFecModes, "port_fec_rs_fec");
constexpr uint32_t kFecLast = facts::codeOf(facts::kFecModes, "port_fec_last");
// Special port types: 1 normal, 2 a LAG member.
constexpr uint32_t kNormalPort = 1, kLagMemberPort = 2;

template <size_t N>
bool contains(const uint32_t (&list)[N], uint64_t v) {
  for (uint32_t x : list)
    if (x == v) return true;
  return false;
}

// What a port set to negotiate runs at: the best both ends do.
uint32_t negotiatedSpeed(const Sim &s, const Port &p) {
  if (!isFibre(s, p)) return kSpeed1000Full;
  return s.model.layout.cage ? kSpeed25G : kSpeed10G;
}

// The speed the link runs at while up: the one set, or the one negotiated.
const SpeedMode &runningSpeed(const Sim &s, const Port &p) {
  const SpeedMode *m = speedModeOf(p.speedMode == kSpeedAuto ? negotiatedSpeed(s, p) : p.speedMode);
  return m ? *m : *speedModeOf(negotiatedSpeed(s, p));
}

// The speed-mode call answers the configured speed, up or down: "auto"
// on a port that negotiates it.
uint64_t configuredSpeedOf(const Sim &, const Port &p) { return p.speedMode; }
uint64_t autoNegOf(const Sim &, const Port &p) { return p.speedMode == kSpeedAuto ? kAutoNegOn : kAutoNegOff; }
uint64_t duplexModeOf(const Sim &, const Port &p) {
  const SpeedMode *m = speedModeOf(p.speedMode);
  return m && m->half ? 0 : 1;
}
uint64_t operDuplexOf(const Sim &s, const Port &p) { return isUp(p) ? duplexModeOf(s, p) : kNoDuplex; }
uint64_t headerSizeOf(const Sim &, const Port &) { return kHeaderSize; }
uint64_t adminStateOf(const Sim &, const Port &p) { return p.adminEnabled ? 1 : 0; }
uint64_t capabilitiesOf(const Sim &s, const Port &p) { return isFibre(s, p) ? kFibreCapabilities : kCopperCapabilities; }
uint64_t specialTypeOf(const Sim &, const Port &p) { return p.lagMember ? kLagMemberPort : kNormalPort; }
uint64_t laneCountOf(const Sim &, const Port &) { return 1; }

// Without a module the port has no active medium to report.
int activeMediaCall(Sim &s, Call &c) {
  using enum args::rpcclt_openapiIfActiveMediaTypeGet::Param;
  const Port *p = findPort(s, c.port());
  if (!p || p->medium == 0) return OPEN_E_NOT_FOUND;
  c.out(mediaType, p->medium);
  return OPEN_E_NONE;
}

// Pause frames are negotiated on a copper link that is up.
int pauseStatusCall(Sim &, Call &c, Port &p) {
  using enum args::rpcclt_openapiIfPauseStatusGet::Param;
  bool pause = isUp(p) && p.medium == facts::codeOf(facts::kMedia, "copper");
  c.out(rxPauseAllowed, pause);
  c.out(txPauseAllowed, pause);
  return OPEN_E_NONE;
}

bool inCage(const Sim &s, uint64_t ifNum) { return s.model.layout.inCage(ifNum); }

// A call about a port of the cage. Copper ports have no cage: what only
// the cage knows is unsupported there.
template <int (*Answer)(Sim &, Call &, Port &)>
int onCage(Sim &s, Call &c) {
  if (!inCage(s, c.port())) return findInterface(s, c.port()) ? OPEN_E_UNAVAIL : OPEN_E_NOT_FOUND;
  return Answer(s, c, *findPort(s, c.port()));
}

// The other ports of the cage, first to last.
std::vector<uint32_t> peersOf(const Sim &s, uint64_t ifNum) {
  std::vector<uint32_t> peers;
  const SwitchLayout &layout = s.model.layout;
  for (uint32_t p = layout.firstFibre(); p <= layout.ports(); ++p)
    if (p != ifNum) peers.push_back(p);
  return peers;
}

int fecModeGet(Sim &, Call &c, Port &p) {
  using enum args::rpcclt_openapiIntfFECModeGet::Param;
  c.out(configMode, p.settings.fecConfig);
  c.out(operMode, p.settings.fecOper);
  return OPEN_E_NONE;
}

int rootPortGet(Sim &s, Call &c, Port &) {
  using enum args::rpcclt_openapiIfExpPortRootPortGet::Param;
  c.out(rootSlot, kRootSlot);
  c.out(rootPort, s.model.layout.firstFibre());
  return OPEN_E_NONE;
}

int firstPeerGet(Sim &s, Call &c, Port &) {
  using enum args::rpcclt_openapiIfExpPortFirstPeerGet::Param;
  c.out(peerIfNum, peersOf(s, c.port()).front());
  return OPEN_E_NONE;
}

// The speed and negotiation are one setting: a fixed speed turns
// negotiation off, and the half duplex speeds set the duplex with them. A
// speed the port's capabilities lack is the platform's failure.
int speedSet(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiIfSpeedSet::Param;
  const SpeedMode *m = speedModeOf(c.in(speed));
  if (!m) return OPEN_E_PARAM;
  if (!(capabilitiesOf(s, p) & m->capability)) return OPEN_E_FAIL;
  settleCounters(s, p, clockNowMs(s.clock));
  p.speedMode = m->value;
  return OPEN_E_NONE;
}

// Negotiation turned off on a port that negotiates fixes the speed it
// negotiates, so that a port up without negotiation runs at a known speed.
int autoNegSet(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiIfAutoNegSet::Param;
  bool on = c.in(autoNeg) == kAutoNegOn;
  if (on && !(capabilitiesOf(s, p) & kAutoNegBit)) return OPEN_E_FAIL;
  settleCounters(s, p, clockNowMs(s.clock));
  if (on) p.speedMode = kSpeedAuto;
  else if (p.speedMode == kSpeedAuto) p.speedMode = negotiatedSpeed(s, p);
  return OPEN_E_NONE;
}

int frameSizeSet(Sim &s, uint64_t ifNum, uint64_t frameSize) {
  Port *p = findPort(s, ifNum);
  if (!p) return OPEN_E_NOT_FOUND;
  if (frameSize < kMinFrameSize || frameSize > kMaxFrameSize) return OPEN_E_PARAM;
  p->settings.maxFrame = static_cast<uint32_t>(frameSize);
  return OPEN_E_NONE;
}

// The MTU is the frame payload: the frame adds the Ethernet header.
int mtuSet(Sim &s, Call &c) { return frameSizeSet(s, c.port(), c.last().num + kHeaderSize); }
int maxFrameSizeSet(Sim &s, Call &c) {
  using enum args::rpcclt_openapiIfMaxFrameSizeSet::Param;
  return frameSizeSet(s, c.port(), c.in(maxFrameSize));
}

int adminStateSet(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiIfAdminStateSet::Param;
  setAdminState(s, p, c.in(adminState) == 1, clockNowMs(s.clock));
  return OPEN_E_NONE;
}

int descriptionSet(Sim &, Call &c, Port &p) {
  using enum args::rpcclt_openapiIfDescrSet::Param;
  p.settings.description = c.text(descr);
  return OPEN_E_NONE;
}

int nextExpandablePort(Sim &s, Call &c) {
  using enum args::rpcclt_openapiIntfExpandablePortNextGet::Param;
  for (uint32_t p = static_cast<uint32_t>(c.in(prevIfNum)) + 1; p <= s.model.layout.ports(); ++p) {
    if (!inCage(s, p)) continue;
    c.out(nextIfNum, p);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

int modeSupported(Sim &, Call &c) {
  using enum args::rpcclt_openapiIntfExpandablePortModeSupportedGet::Param;
  if (c.in(mode) > kLastExpandMode) return OPEN_E_NOT_FOUND;
  c.out(isSupported, contains(kSupportedModes, c.in(mode)) ? 1 : 0);
  return OPEN_E_NONE;
}

// A new split is configured at once and runs after the next reload, so
// only the configured mode changes.
int expandModeSet(Sim &, Call &c, Port &p) {
  uint64_t mode = c.last().num;
  if (!contains(kSupportedModes, mode)) return OPEN_E_PARAM;
  p.settings.expandConfigMode = static_cast<uint32_t>(mode);
  return OPEN_E_NONE;
}

int peersByMode(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiIntfExpandableModePeersGetByModeGet::Param;
  std::string list;
  std::vector<uint32_t> peerList = peersOf(s, c.port());
  for (uint32_t p : peerList) {
    if (!list.empty()) list += ',';
    list += std::to_string(p);
  }
  c.out(mode, p.settings.expandConfigMode);
  c.outText(peers, list);
  c.out(peerCount, peerList.size());
  return OPEN_E_NONE;
}

// "Auto" settles on RS FEC with the 25G optics fitted.
int fecModeSet(Sim &, Call &c, Port &p) {
  uint64_t mode = c.last().num;
  if (mode >= kFecLast) return OPEN_E_PARAM;
  PortSettings &set = p.settings;
  set.fecConfig = static_cast<uint32_t>(mode);
  set.fecOper = mode == kFecAuto ? kFecRs : set.fecConfig;
  return OPEN_E_NONE;
}

}  // namespace

uint64_t lineOctetsPerSec(const Sim &s, const Port &p) { return runningSpeed(s, p).mbps * 125000ULL; }
bool halfDuplex(const Sim &s, const Port &p) { return runningSpeed(s, p).half; }

void removeTransceiver(Sim &s, Port &p, int64_t atMs) {
  changePort(s, p, atMs, [](Port &q) { q.medium = 0; });
}

// A new module comes up on its medium, with a partner at the far end.
void insertTransceiver(Sim &s, Port &p, const std::string &media, int64_t atMs) {
  changePort(s, p, atMs, [&](Port &q) {
    for (const facts::Code &m : facts::kMedia)
      if (media == m.api) q.medium = m.value;
    q.partner = true;
  });
}

const CallRule kAttributeRules[] = {
    SIM_RULE(rpcclt_openapiIfSpeedModeGet, onPort<derived<configuredSpeedOf>>),
    SIM_RULE(rpcclt_openapiIfDuplexModeGet, onPort<derived<duplexModeOf>>),
    SIM_RULE(rpcclt_openapiIfEthernetHeaderSizeGet, onPort<derived<headerSizeOf>>),
    SIM_PORT_SETTING(rpcclt_openapiIfSoftShutdownStateGet, rpcclt_openapiIfSoftShutdownStateSet,
                     settings.softShutdown),
    SIM_PORT_SETTING(rpcclt_openapiIfLinkTrapGet, rpcclt_openapiIfLinkTrapSet, settings.linkTrap),
    SIM_RULE(rpcclt_openapiIntfFECModeGet, onCage<fecModeGet>),
    SIM_RULE(rpcclt_openapiIntfExpandablePortConfigModeGet, portGet<SIM_PORT_FIELD(settings.expandConfigMode)>),
    SIM_RULE(rpcclt_openapiIntfExpandablePortOperModeGet, portGet<SIM_PORT_FIELD(settings.expandOperMode)>),
    SIM_RULE(openapiIfDuplexGet, onPort<derived<operDuplexOf>>),
    SIM_RULE(openapiIfAutoNegGet, onPort<derived<autoNegOf>>),
    SIM_RULE(openapiIfMaxFrameSizeGet, portGet<SIM_PORT_FIELD(settings.maxFrame)>),
    SIM_RULE(openapiIfAdminStateGet, onPort<derived<adminStateOf>>),
    SIM_RULE(rpcclt_openapiIfCapabilitiesGet, onPort<derived<capabilitiesOf>>),
    SIM_RULE(rpcclt_openapiIfDisableReasonGet, portGet<SIM_PORT_FIELD(disableReason)>),
    SIM_RULE(rpcclt_openapiIfActiveMediaTypeGet, activeMediaCall),
    SIM_RULE(rpcclt_openapiIfPauseStatusGet, onPort<pauseStatusCall>),
    SIM_RULE(rpcclt_openapiIfSpecialPortTypeGet, onPort<derived<specialTypeOf>>),
    SIM_RULE(rpcclt_openapiIfExpPortRootPortGet, onCage<rootPortGet>),
    SIM_RULE(rpcclt_openapiIfExpPortOperModeLaneCountGet, onCage<derived<laneCountOf>>),
    SIM_RULE(rpcclt_openapiIfExpPortFirstPeerGet, onCage<firstPeerGet>),
    SIM_RULE(rpcclt_openapiIfPortSpeedLaneCountGet, onPort<derived<laneCountOf>>),
    SIM_SETTER(rpcclt_openapiIfSpeedSet, rpcclt_openapiIfSpeedModeGet, onPort<speedSet>),
    SIM_SETTER(rpcclt_openapiIfAutoNegSet, openapiIfAutoNegGet, onPort<autoNegSet>),
    SIM_SETTER(rpcclt_openapiIfMtuSizeSet, openapiIfMaxFrameSizeGet, mtuSet),
    SIM_SETTER(rpcclt_openapiIfMtuSizeSetV2, openapiIfMaxFrameSizeGet, mtuSet),
    SIM_SETTER(rpcclt_openapiIfMaxFrameSizeSet, openapiIfMaxFrameSizeGet, maxFrameSizeSet),
    SIM_SETTER(rpcclt_openapiIfAdminStateSet, openapiIfAdminStateGet, onPort<adminStateSet>),
    SIM_SETTER(rpcclt_openapiIfDescrSet, rpcclt_openapiIfDescrGet, onPort<descriptionSet>),
    SIM_RULE(rpcclt_openapiIntfExpandablePortNextGet, nextExpandablePort),
    SIM_RULE(rpcclt_openapiIntfExpandablePortModeSupportedGet, modeSupported),
    SIM_SETTER(rpcclt_openapiIntfExpandablePortModeSet, rpcclt_openapiIntfExpandablePortConfigModeGet,
               onCage<expandModeSet>),
    SIM_RULE(rpcclt_openapiIntfExpandableModePeersGetByModeGet, onCage<peersByMode>),
    SIM_SETTER(rpcclt_openapiIntfFECModeSet, rpcclt_openapiIntfFECModeGet, onCage<fecModeSet>),
};

// Copper ports negotiate; fibre ports run fixed at 25G in the cage, 10G
// as uplinks. The storage array behind the first fibre port runs jumbo
// frames.
static void seedAttributes(Sim &s) {
  const SwitchLayout &layout = s.model.layout;
  for (auto &[n, p] : s.model.ports) {
    p.speedMode = !layout.isFibre(n) ? kSpeedAuto : layout.cage ? kSpeed25G : kSpeed10G;
    p.settings.maxFrame = n == layout.firstFibre() ? kMaxFrameSize : kMinFrameSize;
    bool cage = layout.inCage(n);
    p.settings.expandConfigMode = p.settings.expandOperMode = cage ? kSingle25G : 0;
  }
}

const RuleGroup kAttributeGroup = {kAttributeRules, std::size(kAttributeRules), seedAttributes};

}  // namespace sim
