// The power-saving history routes: a port's LPI samples, read one record
// at a time through the platform's cursor.
#ifndef API_GREEN_GREEN_HISTORY_H
#define API_GREEN_GREEN_HISTORY_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include "api/fields.h"
#include "api/route_doc.h"
#include "open_api.h"

// The most next-entry calls one search makes before it gives up.
inline constexpr uint32_t kHistoryWalkLimit = 4096;

// Advances `sample` in place to the following record; an OpEN result.
using NextEntryFn = int (*)(open_pwr_sav_sample_t *sample);

// With `sample` holding a port's first record, moves it to the record
// after the one numbered `sampleNo` (0: after the first record). Returns
// the reply code; on 0 `sample` holds the answer.
uint32_t historyEntryAfter(uint16_t sampleNo, open_pwr_sav_sample_t *sample, NextEntryFn next);

// The four reported fields of a record (the cursor stays private).
cJSON *historySampleJson(const open_pwr_sav_sample_t &sample);

uint32_t greenHistoryFirstEntry(void);
uint32_t greenHistoryNextEntry(void);
uint32_t greenHistoryNextSample(void);

namespace history_doc {
inline constexpr doc::Field kSampleNo{.name = "sampleNo",
                                      .text =
                                          "The number of the history record, counted from 1 since the port's "
                                          "history was last cleared.",
                                      .unit = &facts::kIdentifier,
                                      .range = &facts::kSampleNumbers};
inline constexpr doc::Field kSampleTime{
    .name = "sampleTime", .text = "When the sample was taken, by the switch's clock.", .unit = &facts::kUnixSeconds};
inline constexpr doc::Field kPercentLpiTime{
    .name = "percentLpiTime",
    .text = "The share of the sample interval the port spent in low-power idle.",
    .unit = &facts::kPercent,
    .range = &facts::kPercentage};
inline constexpr doc::Field kPercentLpiTimeTotal{
    .name = "percentLpiTimeTotal",
    .text = "The share of all sampled time up to this sample the port spent in low-power idle.",
    .unit = &facts::kPercent,
    .range = &facts::kPercentage};
inline constexpr doc::Field kAfterSample{.name = kSampleNo.name,
                                         .text =
                                             "The number of the record the answer follows; 0 asks for the "
                                             "record after the first.",
                                         .unit = &facts::kIdentifier,
                                         .range = &facts::kSampleNumbers};
inline constexpr doc::Field kCurSample{.name = "curSample",
                                       .text = "The number of the record the answer follows; 0 asks for the first.",
                                       .unit = &facts::kIdentifier,
                                       .range = &facts::kSampleNumbers};
}  // namespace history_doc

inline constexpr doc::Field kHistorySampleDoc[] = {history_doc::kSampleNo, history_doc::kSampleTime,
                                                   history_doc::kPercentLpiTime, history_doc::kPercentLpiTimeTotal};
inline constexpr doc::Field kHistoryPortQuery[] = {fields::kIntIfNum};
inline constexpr doc::Field kHistoryAfterQuery[] = {fields::kIntIfNum, history_doc::kAfterSample};
inline constexpr doc::Field kHistorySampleQuery[] = {fields::kIntIfNum, history_doc::kCurSample};
inline constexpr doc::HandDoc kHistoryFirstEntryDoc = doc::read(
    "Reads the first power-saving history record of one port", "greenPwrSavHistory", kHistoryPortQuery, kHistorySampleDoc);
inline constexpr doc::HandDoc kHistoryNextEntryDoc =
    doc::read("Reads the power-saving history record of one port after the one numbered sampleNo (0: after the first)",
              "greenPwrSavHistory", kHistoryAfterQuery, kHistorySampleDoc);
inline constexpr doc::HandDoc kHistoryNextSampleDoc = doc::read(
    "Reads the power-saving history record after curSample, as the switch finds it", "greenPwrSavHistory", kHistorySampleQuery, kHistorySampleDoc);

#endif
