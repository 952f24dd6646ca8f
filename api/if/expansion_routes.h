// Port expansion reads that take a mode name from the query string.
#ifndef API_IF_EXPANSION_ROUTES_H
#define API_IF_EXPANSION_ROUTES_H

#include <stdint.h>

#include "api/if/attribute_texts.h"
#include "api/fields.h"
#include "api/route_doc.h"

uint32_t ifExpandPortModeSupportedGet(void);

inline constexpr doc::Field kExpandModeQuery[] = {{.name = fields::kExpandPortMode.name,
                                                   .text = fields::kExpandPortMode.text,
                                                   .type = doc::Type::Text,
                                                   .accepts = &kIfExpandModeValue,
                                                   .codes = fields::kExpandPortMode.codes}};
inline constexpr doc::Field kExpandModeSupported[] = {
    {.name = "isExpandedModeSupported",
     .text = "\"true\" when the switch can run ports in the mode, else \"false\".",
     .type = doc::Type::Text,
     .texts = &kTrue}};
inline constexpr doc::HandDoc kExpandModeSupportedDoc =
    doc::read("Asks whether the switch supports a port expansion mode", "if", kExpandModeQuery, kExpandModeSupported);

#endif
