// Interface names as a user types them (0/5, lag2, vlan10, all) turned
// into OpEN interface numbers.
#ifndef API_IF_NAME_LOOKUP_H
#define API_IF_NAME_LOOKUP_H

#include <stddef.h>
#include <stdint.h>

#include "api/fields.h"
#include "api/route_doc.h"

enum class NameKind { All, Lag, Vlan, SlotPort, Unknown };

inline constexpr size_t kNameLookupBuf = 128;

struct NameQuery {
  NameKind kind = NameKind::All;
  char name[kNameLookupBuf] = {};  // decoded, as the user gave it
  uint32_t index = 0;              // Lag: 1-based LAG index; Vlan: VLAN ID
  int slot = 0;                    // SlotPort
  int port = 0;
};

// Reads "name=" from anywhere in the query string. A missing, empty or
// overlong name (128 characters or more) means "all".
NameQuery parseNameQuery(const char *query);

uint32_t nameLookupHandler(void);

namespace name_doc {
inline constexpr doc::Field kName{
    .name = "name",
    .text = "The interface name: slot/port (0/5), lagN (the Nth LAG), vlanN (a routing VLAN), or all; absent, "
            "empty or 128 characters and more read as all.",
    .type = doc::Type::Text,
    .optional = true};
inline constexpr doc::Field kEntryName{.name = fields::kInterface.name,
                                       .text = "The interface's name: slot/port as \"0/3\", \"lag1\", "
                                               "\"vlan10\"; the name as asked when one was asked for.",
                                       .type = doc::Type::Text};
inline constexpr doc::Field kEntryNumber{
    .name = "number", .text = "The interface number behind the name.", .unit = &facts::kIdentifier};
inline constexpr doc::Field kEntries{.name = "interfaces",
                                     .text = "The interfaces whose names match; empty when none does."};
inline constexpr doc::Field kNameQuery[] = {kName};
inline constexpr doc::Field kNamedInterface[] = {kEntryName, kEntryNumber};
}  // namespace name_doc

inline constexpr doc::HandDoc kNameLookupDoc =
    doc::readList("Finds interface numbers by name: 0/5, lag2, vlan10, or all (also for a missing name)", "if",
                  name_doc::kNameQuery, name_doc::kNamedInterface, name_doc::kEntries);

#endif
