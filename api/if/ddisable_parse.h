// D-Disable auto-recovery as the switch's CLI shows and configures it: the
// cause names and the reading of "show errdisable recovery".
#ifndef API_IF_DDISABLE_PARSE_H
#define API_IF_DDISABLE_PARSE_H

#include <stddef.h>
#include <stdint.h>

inline constexpr size_t kCauseNameBuf = 128;
inline constexpr size_t kFeatureListBuf = 1024;

// The i-th API cause name; null past the last.
const char *recoveryCauseName(size_t i);

// The CLI's name of an API cause name ("bpdu_rate_limit" -> "bpdustorm"),
// compared exactly; null for a name the switch does not know.
const char *recoveryCauseCliName(const char *apiName);

// The query parameter and body key that names a cause.
inline constexpr char kCauseKey[] = "cause";

// The text after "cause=" anywhere in the query, up to the next "&", cut
// to size-1 characters; "" when absent.
void recoveryCauseFromQuery(const char *query, char *out, size_t size);

// The number after the timeout line's label; 0 when there is none.
uint32_t parseRecoveryInterval(const char *show);

enum class CauseMode { Missing, Enabled, Disabled };
// The status column of the first line that starts with `cliName`.
CauseMode parseCauseMode(const char *show, const char *cliName);

// The first word of every table row between the dashed line and the
// timeout line, joined by ","; words that would not fit are left out.
// False when the list is empty.
bool parseFeatureList(const char *show, char *out, size_t size);

// The first number on the line that carries the time-left label; 0 when
// the label or a number is missing.
uint32_t parseRecoveryTimeLeft(const char *show);

#endif
