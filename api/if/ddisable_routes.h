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
