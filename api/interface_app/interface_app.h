// Interface application settings with logic of their own.
#ifndef API_INTERFACE_APP_INTERFACE_APP_H
#define API_INTERFACE_APP_INTERFACE_APP_H

#include <stdint.h>

#include "api/fields.h"
#include "api/route_doc.h"

uint32_t interfaceAppTimeRangeSet(void);

inline constexpr doc::Field kTimeRangeQuery[] = {fields::kIntIfNum};
inline constexpr doc::Field kTimeRangeBody[] = {
    {.name = fields::kTimeRange.name, .text = fields::kTimeRange.text, .type = doc::Type::Text}};
inline constexpr doc::HandDoc kTimeRangeSetDoc =
    doc::set("Names the time range of a port's application settings", kTimeRangeQuery, kTimeRangeBody);

#endif
