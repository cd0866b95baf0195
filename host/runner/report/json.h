// JSON as every report of sokrun is made of: objects keep the order in which their fields were put in.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/runner/report/shown_text.h"

namespace sok {

using Json = nlohmann::ordered_json;

// The text of a value, fit for a terminal; bytes that are no UTF-8 become U+FFFD. `indent` blanks a level, -1: all in
// one line.
inline std::string Dump(const Json& json, int indent = 1) {
  return ShownJson(json.dump(indent, ' ', false, Json::error_handler_t::replace));
}

}  // namespace sok
