#include "api/if/name_lookup.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "switch/if_walk.h"
#include "frame/envelope.h"
#include "frame/params.h"
#include "platform/switch_facts.h"
#include "switch/cli_files.h"

namespace {

constexpr facts::Range kVlans = facts::kVlanIds;
constexpr size_t kEntryNameBuf = 32;

void copyName(NameQuery &q, const char *query) {
  const char *start = queryLooseValue(query, name_doc::kName.name);
  if (start) {
    size_t len = queryValueLength(start);
    if (len >= 1 && len < sizeof q.name) {
      memcpy(q.name, start, len);
      q.name[len] = '\0';
      urlDecode(q.name);
      return;
    }
  }
  strCopyBounded(q.name, "all", sizeof q.name);
}

void classify(NameQuery &q) {
  if (strcasecmp(q.name, "all") == 0) {
    q.kind = NameKind::All;
    return;
  }
  q.kind = NameKind::Unknown;
  if (strncasecmp(q.name, "lag", 3) == 0) {
    long n = strtol(q.name + 3, nullptr, 10);
    if (n > 0) {
      q.kind = NameKind::Lag;
      q.index = static_cast<uint32_t>(n);
    }
  } else if (strncasecmp(q.name, "vlan", 4) == 0) {
    long n = strtol(q.name + 4, nullptr, 10);
    if (n >= static_cast<long>(kVlans.least) && n <= static_cast<long>(kVlans.most)) {
      q.kind = NameKind::Vlan;
      q.index = static_cast<uint32_t>(n);
    }
  } else if (sscanf(q.name, "%d/%d", &q.slot, &q.port) == 2) {
    q.kind = NameKind::SlotPort;
  }
}

void addEntry(cJSON *list, const char *name, uint32_t number) {
  cJSON *e = cJSON_CreateObject();
  if (!e) return;
  cJSON_AddStringToObject(e, name_doc::kEntryName.name, name);
  cJSON_AddNumberToObject(e, name_doc::kEntryNumber.name, number);
  cJSON_AddItemToArray(list, e);
}

bool slotPortOf(uint32_t ifNum, int *slot, int *port) {
  uint8_t unit = 0, s = 0;
  uint16_t p = 0;
  if (rpcclt_openapiHashIntfUnitSlotPortGet(&gOpenClient, ifNum, &unit, &s, &p) != OPEN_E_NONE) return false;
  *slot = s;
  *port = p;
  return true;
}

void listPhysical(cJSON *list) {
  forEachInterface(OPEN_INTF_TYPE_PHY, [&](uint32_t ifNum) {
    int slot = 0, port = 0;
    if (!slotPortOf(ifNum, &slot, &port)) return true;
    char name[kEntryNameBuf];
    snprintf(name, sizeof name, "%d/%d", slot, port);
    addEntry(list, name, ifNum);
    return true;
  });
}

// Named by their position in the walk, not by any index of the LAG.
void listLags(cJSON *list) {
  int count = 0;
  forEachInterface(OPEN_INTF_TYPE_LAG, [&](uint32_t ifNum) {
    char name[kEntryNameBuf];
    snprintf(name, sizeof name, "lag%d", ++count);
    addEntry(list, name, ifNum);
    return true;
  });
}

void listRoutingVlans(cJSON *list) {
  for (uint32_t vlan = kVlans.least; vlan <= kVlans.most; ++vlan) {
    uint32_t ifNum = 0;
    if (rpcclt_openapiRtrVlanIntfIfNumGet(&gOpenClient, vlan, &ifNum) != OPEN_E_NONE || ifNum == 0) continue;
    char name[kEntryNameBuf];
    snprintf(name, sizeof name, "vlan%u", vlan);
    addEntry(list, name, ifNum);
  }
}

// LAG numbers are consecutive on this platform, so the Nth LAG is computed
// from the first without asking whether it exists.
void findLag(cJSON *list, const NameQuery &q) {
  uint32_t first = 0;
  if (swapiIfFirstGet(&gOpenClient, OPEN_INTF_TYPE_LAG, &first) != OPEN_E_NONE) return;
  addEntry(list, q.name, first + q.index - 1);
}

void findVlan(cJSON *list, const NameQuery &q) {
  uint32_t ifNum = 0;
  if (rpcclt_openapiRtrVlanIntfIfNumGet(&gOpenClient, q.index, &ifNum) == OPEN_E_NONE) addEntry(list, q.name, ifNum);
}

void findSlotPort(cJSON *list, const NameQuery &q) {
  forEachInterface(OPEN_INTF_TYPE_PHY, [&](uint32_t ifNum) {
    int slot = 0, port = 0;
    if (!slotPortOf(ifNum, &slot, &port) || slot != q.slot || port != q.port) return true;
    addEntry(list, q.name, ifNum);
    return false;
  });
}

}  // namespace

NameQuery parseNameQuery(const char *query) {
  NameQuery q;
  copyName(q, query);
  classify(q);
  return q;
}

uint32_t nameLookupHandler(void) {
  NameQuery q = parseNameQuery(getenv("QUERY_STRING"));
  JsonPtr root(cJSON_CreateObject());
  cJSON *list = root ? cJSON_AddArrayToObject(root.get(), name_doc::kEntries.name) : nullptr;
  if (list) {
    switch (q.kind) {
      case NameKind::All:
        listPhysical(list);
        listLags(list);
        listRoutingVlans(list);
        break;
      case NameKind::Lag: findLag(list, q); break;
      case NameKind::Vlan: findVlan(list, q); break;
      case NameKind::SlotPort: findSlotPort(list, q); break;
      case NameKind::Unknown: break;
    }
  }
  replyRead(CODE_SUCCESS, "if", root.get());
  return 0;
}
