// The model to and from the JSON of scenario files and dumps.
#ifndef PLATFORM_SIM_SIM_MODEL_JSON_H
#define PLATFORM_SIM_SIM_MODEL_JSON_H

#include <cjson/cJSON.h>

#include <string>

#include "sim/sim_model.h"

namespace sim {

// Every fact of the model, as a dump shows it.
cJSON *modelToJson(const Model &m);
// A file's "layout": the shape of the switch to seed before the rest.
bool layoutFromJson(const cJSON *j, SwitchLayout *layout, std::string *error);
// Applies the sections of a file's "model" onto a seeded model; a field
// the model does not have, or of the wrong kind, is refused with one line
// naming where.
bool modelFromJson(const cJSON *j, Model &m, std::string *error);

}  // namespace sim

#endif
