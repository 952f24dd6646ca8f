#include "sim/sim_checks.h"

#include <ctype.h>

#include <set>

namespace sim {

bool wellFormedMac(const std::string &t) {
  if (t.size() != 17) return false;
  for (size_t i = 0; i < t.size(); ++i)
    if (i % 3 == 2 ? t[i] != ':' && t[i] != '-' : !isxdigit(static_cast<unsigned char>(t[i]))) return false;
  return true;
}

namespace {

// As the model keeps an address: upper-case pairs joined by ":".
bool canonicalMac(const std::string &t) {
  if (!wellFormedMac(t)) return false;
  for (size_t i = 0; i < t.size(); ++i)
    if (i % 3 == 2 ? t[i] != ':' : islower(static_cast<unsigned char>(t[i]))) return false;
  return true;
}

const char *lockFault(const Sim &s, const PmlPort &pml) {
  if (!pml.lastViolationMac.empty() && !canonicalMac(pml.lastViolationMac))
    return "\"pml\".\"lastViolationMac\" is no MAC address (upper-case pairs joined by \":\")";
  if (pml.lastViolationVlan && !vlanExists(s, pml.lastViolationVlan)) return "\"pml\".\"lastViolationVlan\" is no VLAN of the switch";
  for (const auto &[vlan, limit] : pml.vlanDynamicLimit)
    if (!vlanExists(s, vlan)) return "\"pml\".\"vlanDynamicLimit\" names a VLAN the switch lacks";
  return nullptr;
}

const char *portFault(const Sim &s, uint32_t n, const Port &p) {
  const SwitchLayout &layout = s.model.layout;
  bool fibre = layout.isFibre(n);
  bool lagKnown = !p.lagMember || (p.lagMember >= SwitchLayout::kFirstLag &&
                                   p.lagMember < SwitchLayout::kFirstLag + layout.lags);
  if (fibre && p.medium > 2) return "\"medium\" must be 0 (none), 1 (copper) or 2 (fiber)";
  if (!fibre && p.medium != 1) return "\"medium\" of a copper port is 1 (copper)";
  if (fibre && p.lagMember) return "\"lagMember\" is for copper ports";
  if (!lagKnown) return "\"lagMember\" is no LAG of the switch";
  if (!fibre && p.partner && !p.cableM) return "\"partner\" on a copper port needs a cable (\"cableM\")";
  if (p.disableReason && causeOf(p.disableReason) < 0) return "\"disableReason\" is no D-Disable cause's reason";
  return lockFault(s, p.pml);
}

// A locked address: on a port of the switch, in one of its VLANs, a
// unicast address as the model keeps it, bound to a stream or none.
const char *entryFault(const Sim &s, const PmlEntry &e) {
  if (!s.model.ports.count(e.ifNum)) return "\"ifNum\" is no port of the switch";
  if (!canonicalMac(e.mac) || (isdigit(static_cast<unsigned char>(e.mac[1])) ? e.mac[1] - '0' : e.mac[1] - 'A' + 10) & 1)
    return "\"macAddr\" is no unicast MAC address (upper-case pairs joined by \":\")";
  if (!vlanExists(s, e.vlan)) return "\"vlanId\" is no VLAN of the switch";
  if (e.stream && (e.stream < facts::kStreamId.least || e.stream > facts::kStreamId.most))
    return "\"streamId\" must be 0 (none) or from 1 to 2047";
  return nullptr;
}

bool fail(std::string *error, const std::string &where, const char *why) {
  *error = "scenario: \"model\"" + where + ": " + why;
  return false;
}

}  // namespace

bool scenarioFactsAgree(const Sim &s, std::string *error) {
  const Model &m = s.model;
  std::set<uint32_t> vlans(m.vlans.begin(), m.vlans.end());
  if (vlans.size() != m.vlans.size() ||
      (!vlans.empty() && (*vlans.begin() < facts::kLockVlan.least || *vlans.rbegin() > facts::kLockVlan.most)))
    return fail(error, ".\"vlans\"", ("VLANs from " + std::to_string(facts::kLockVlan.least) + " to " +
                                        std::to_string(facts::kLockVlan.most) + ", each once").c_str());
  for (const auto &[n, p] : m.ports)
    if (const char *why = portFault(s, n, p)) return fail(error, ".\"ports\".\"" + std::to_string(n) + "\"", why);
  for (const auto &[vlan, settings] : m.pml.vlans)
    if (!vlanExists(s, vlan)) return fail(error, ".\"pml\".\"vlans\"", ("VLAN " + std::to_string(vlan) + " is no VLAN of the switch").c_str());
  const std::pair<const char *, const std::vector<PmlEntry> *> tables[] = {
      {"static", &m.pml.statics}, {"dynamic", &m.pml.dynamics}, {"streams", &m.pml.streams}};
  for (const auto &[name, entries] : tables)
    for (size_t i = 0; i < entries->size(); ++i)
      if (const char *why = entryFault(s, (*entries)[i]))
        return fail(error, ".\"pml\".\"" + std::string(name) + "\"[" + std::to_string(i) + "]", why);
  return true;
}

}  // namespace sim
