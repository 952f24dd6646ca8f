// D-Disable auto-recovery: OpEN has no call for it, so these routes read
// the switch's "show errdisable recovery" output and apply CLI lines.
#ifndef API_IF_DDISABLE_ROUTES_H
#define API_IF_DDISABLE_ROUTES_H

#include <stdint.h>

#include "api/if/ddisable_parse.h"
#include "api/route_doc.h"

uint32_t recoveryIntervalSetHandler(void);
uint32_t recoveryIntervalGetHandler(void);
uint32_t recoveryCauseGetHandler(void);
uint32_t recoveryCauseSetHandler(void);
uint32_t nextPhysicalIfHandler(void);
uint32_t recoveryFeatureListHandler(void);
uint32_t recoveryTimeLeftHandler(void);

namespace recovery_doc {
inline constexpr doc::Field kInterval[] = {{"interval"}};
inline constexpr doc::Field kCause[] = {{"cause", doc::Type::Text, nullptr, nullptr, nullptr, recoveryCauseName}};
inline constexpr doc::Field kMode[] = {{"mode", doc::Type::Text, &kEnable}};
inline constexpr doc::Field kCauseAndMode[] = {kCause[0], kMode[0]};
inline constexpr doc::Field kPrevIfNum[] = {{.name = "prevIfNum", .optional = true}};
inline constexpr doc::Field kNextIfNum[] = {{"nextIfNum"}};
inline constexpr doc::Field kFeatureList[] = {{"featureList", doc::Type::Text}};
inline constexpr doc::Field kTimeLeft[] = {{"timeLeft"}};
}  // namespace recovery_doc

inline constexpr doc::HandDoc kRecoveryIntervalSetDoc{
    .summary = "Sets the D-Disable auto-recovery interval in seconds (a body without a number is refused)",
    .shape = doc::Shape::Set,
    .body = recovery_doc::kInterval};
inline constexpr doc::HandDoc kRecoveryIntervalGetDoc{.summary = "The D-Disable auto-recovery interval in seconds",
                                                      .shape = doc::Shape::Read,
                                                      .group = "if",
                                                      .reply = recovery_doc::kInterval};
inline constexpr doc::HandDoc kRecoveryCauseGetDoc{.summary = "Whether auto-recovery is on for one D-Disable cause",
                                                   .shape = doc::Shape::Read,
                                                   .group = "if",
                                                   .query = recovery_doc::kCause,
                                                   .reply = recovery_doc::kMode};
inline constexpr doc::HandDoc kRecoveryCauseSetDoc{
    .summary = "Turns auto-recovery on (\"enable\") or off (any other mode) for one D-Disable cause",
    .shape = doc::Shape::Set,
    .body = recovery_doc::kCauseAndMode};
inline constexpr doc::HandDoc kNextPhysicalIfDoc{.summary = "The physical interface after prevIfNum (0: the first)",
                                                 .shape = doc::Shape::Read,
                                                 .group = "if",
                                                 .query = recovery_doc::kPrevIfNum,
                                                 .reply = recovery_doc::kNextIfNum};
inline constexpr doc::HandDoc kRecoveryFeatureListDoc{
    .summary = "The D-Disable causes auto-recovery knows, joined by \",\"",
    .shape = doc::Shape::Read,
    .group = "if",
    .reply = recovery_doc::kFeatureList};
inline constexpr doc::HandDoc kRecoveryTimeLeftDoc{.summary = "Seconds left until the next D-Disable auto-recovery",
                                                   .shape = doc::Shape::Read,
                                                   .group = "if",
                                                   .reply = recovery_doc::kTimeLeft};

#endif
