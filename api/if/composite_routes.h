// The port settings page's resources: hyphenated keys, speeds in Mbit/s,
// several related values in one object. Registered after the
// single-attribute routes so that they take over the shared GET names.
#ifndef API_IF_COMPOSITE_ROUTES_H
#define API_IF_COMPOSITE_ROUTES_H

#include <stdint.h>

#include "api/if/port_fields.h"

uint32_t ifCompositeAdminStateGet(void);
uint32_t ifCompositeAutoNegGet(void);
uint32_t ifCompositeSpeedGet(void);
uint32_t ifCompositeMtuSizeGet(void);
uint32_t ifCompositeDescrGet(void);
uint32_t ifCompositeSoftShutdownGet(void);
uint32_t ifCompositeFecModeGet(void);
uint32_t ifCompositeLinkTrapGet(void);
uint32_t ifCompositeExpandableModeGet(void);
uint32_t ifCompositeExpandableModeSet(void);

// A read of the port named by "ifNum" with these fields; no port is refused with 10003.
constexpr doc::HandDoc portRead(const char *summary, doc::Fields fields) {
  return {.summary = summary, .shape = doc::Shape::Read, .group = "if", .query = port_doc::kPortQuery, .reply = fields};
}

namespace port_doc {
inline constexpr doc::Field kAdminStateFields[] = {kAdminState};
inline constexpr doc::Field kAutoNegFields[] = {kAutoNegotiate};
inline constexpr doc::Field kSpeedFields[] = {kConfiguredSpeed, kOperationalSpeed, kSpeedMode, kConfiguredDuplex,
                                              kOperationalDuplex};
inline constexpr doc::Field kFrameFields[] = {kMtu, kMaxFrameSize, kEthernetHeaderSize};
inline constexpr doc::Field kDescriptionFields[] = {kDescription};
inline constexpr doc::Field kSoftShutdownFields[] = {kSoftShutdown};
inline constexpr doc::Field kFecFields[] = {kFecMode, kFecOper};
inline constexpr doc::Field kLinkTrapFields[] = {fields::kLinkTrap};
inline constexpr doc::Field kLaneFields[] = {kConfigLanes, kOperLanes};
inline constexpr doc::Field kLaneModeBody[] = {{.name = kConfigLanes.name,
                                                .text = "The lane mode to split the port into; compared without "
                                                        "regard to case.",
                                                .type = doc::Type::Text,
                                                .accepts = &kIfLaneModeValue}};
}  // namespace port_doc

inline constexpr doc::HandDoc kAdminStateDoc = portRead("Reads whether one port is administratively enabled, for the port pages", port_doc::kAdminStateFields);
inline constexpr doc::HandDoc kAutoNegDoc = portRead("Reads whether auto-negotiation is on on one port, for the port pages", port_doc::kAutoNegFields);
inline constexpr doc::HandDoc kSpeedDoc = portRead("Reads one port's speed setting in Mbit/s; configured-speed and the duplex fields are fixed", port_doc::kSpeedFields);
inline constexpr doc::HandDoc kMtuSizeDoc = portRead("Reads one port's Ethernet header size; its MTU and largest frame read 0 here", port_doc::kFrameFields);
inline constexpr doc::HandDoc kDescrDoc = portRead("Reads the description of one port, for the port pages", port_doc::kDescriptionFields);
inline constexpr doc::HandDoc kSoftShutdownDoc = portRead("Reads whether one port is soft shut down, for the port pages", port_doc::kSoftShutdownFields);
inline constexpr doc::HandDoc kFecModeDoc = portRead("Reads one port's configured and operational forward error correction", port_doc::kFecFields);
inline constexpr doc::HandDoc kLinkTrapDoc = portRead("Reads whether one port sends link traps, for the port pages", port_doc::kLinkTrapFields);
inline constexpr doc::HandDoc kExpandableModeDoc =
    portRead("Reads one port's configured and operational lane modes", port_doc::kLaneFields);
inline constexpr doc::HandDoc kExpandableModeSetDoc =
    doc::set("Splits a port into lanes; a text naming no lane mode is sent as 0 and the switch decides",
             port_doc::kPortQuery, port_doc::kLaneModeBody);

#endif
