// D-Disable auto-recovery: OpEN has no call for it, so these routes read
// the switch's "show errdisable recovery" output and apply CLI lines.
#ifndef API_IF_DDISABLE_ROUTES_H
#define API_IF_DDISABLE_ROUTES_H

#include <stdint.h>

#include "api/if/ddisable_parse.h"
#include "api/fields.h"
#include "api/route_doc.h"

uint32_t recoveryIntervalSetHandler(void);
uint32_t recoveryIntervalGetHandler(void);
uint32_t recoveryCauseGetHandler(void);
uint32_t recoveryCauseSetHandler(void);
uint32_t nextPhysicalIfHandler(void);
uint32_t recoveryFeatureListHandler(void);
uint32_t recoveryTimeLeftHandler(void);

namespace recovery_doc {
inline constexpr doc::Field kIntervalField{.name = "interval",
                                           .text =
                                               "The time a D-Disabled port waits before auto-recovery brings "
                                               "it back.",
                                           .unit = &facts::kSeconds,
                                           .range = &facts::kRecoveryInterval};
inline constexpr doc::Field kCauseField{.name = kCauseKey,
                                        .text = "The D-Disable cause, or \"all\" for every cause at once.",
                                        .type = doc::Type::Text,
                                        .choices = recoveryCauseName};
inline constexpr doc::Field kModeField{.name = fields::kMode.name,
                                       .text = "\"enable\" when auto-recovery is on for the cause, else \"disable\".",
                                       .type = doc::Type::Text,
                                       .texts = &kEnable};
inline constexpr doc::Field kFeatureListField{
    .name = "featureList",
    .text = "The D-Disable causes auto-recovery knows, as the switch's CLI names them, joined by \",\".",
    .type = doc::Type::Text};
inline constexpr doc::Field kTimeLeftField{
    .name = "timeLeft", .text = "The time until the next auto-recovery; 0 when none is due.", .unit = &facts::kSeconds};
inline constexpr doc::Field kInterval[] = {kIntervalField};
inline constexpr doc::Field kCause[] = {kCauseField};
inline constexpr doc::Field kMode[] = {kModeField};
inline constexpr doc::Field kCauseAndMode[] = {kCauseField, kModeField};
inline constexpr doc::Field kPrevIfNum[] = {{.name = fields::kPrevIfNum.name,
                                             .text = fields::kPrevIfNum.text,
                                             .unit = fields::kPrevIfNum.unit,
                                             .optional = true}};
inline constexpr doc::Field kNextIfNum[] = {fields::kNextIfNum};
inline constexpr doc::Field kFeatureList[] = {kFeatureListField};
inline constexpr doc::Field kTimeLeft[] = {kTimeLeftField};
}  // namespace recovery_doc

inline constexpr doc::HandDoc kRecoveryIntervalSetDoc =
    doc::set("Sets the D-Disable auto-recovery interval in seconds (a body without a number is refused)", {},
             recovery_doc::kInterval);
inline constexpr doc::HandDoc kRecoveryIntervalGetDoc =
    doc::read("Reads the D-Disable auto-recovery interval in seconds", "if", {}, recovery_doc::kInterval);
inline constexpr doc::HandDoc kRecoveryCauseGetDoc =
    doc::read("Reads whether auto-recovery is on for one D-Disable cause", "if", recovery_doc::kCause, recovery_doc::kMode);
inline constexpr doc::HandDoc kRecoveryCauseSetDoc =
    doc::set("Turns auto-recovery on (\"enable\") or off (any other mode) for one D-Disable cause", {},
             recovery_doc::kCauseAndMode);
// Both walks answer alike, for the auto-recovery table and for the
// D-Disable reasons page; each is named for the page it serves.
inline constexpr doc::HandDoc kRecoveryTableNextIfDoc =
    doc::read("Walks the auto-recovery table: the physical interface after prevIfNum (0: the first)", "if",
              recovery_doc::kPrevIfNum, recovery_doc::kNextIfNum);
inline constexpr doc::HandDoc kReasonNextIfDoc =
    doc::read("Walks the D-Disable reasons: the physical interface after prevIfNum (0: the first)", "if",
              recovery_doc::kPrevIfNum, recovery_doc::kNextIfNum);
inline constexpr doc::HandDoc kRecoveryFeatureListDoc =
    doc::read("Reads the D-Disable causes auto-recovery knows, joined by \",\"", "if", {}, recovery_doc::kFeatureList);
inline constexpr doc::HandDoc kRecoveryTimeLeftDoc =
    doc::read("Reads the seconds left until the next D-Disable auto-recovery", "if", {}, recovery_doc::kTimeLeft);

#endif
