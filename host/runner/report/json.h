// JSON as every report of sokrun is made of: objects keep the order in which their fields were put in.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace sok {

using Json = nlohmann::ordered_json;

// The text of a value; bytes that are no UTF-8 become U+FFFD. `indent` blanks a level, -1: all in one line.
inline std::string Dump(const Json& json, int indent = 1) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace sok
