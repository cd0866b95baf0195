// Pages from templates: text files of this folder that are part of the program.
#pragma once

#include <string>

#include "host/runner/report/json.h"

namespace sok {

// A whole page: the body's Mustache template filled with `data`, whose texts are escaped where the template does not
// ask for markup ({{{...}}}).
std::string Page(const std::string& title, const char* body_template, const Json& data);

}  // namespace sok
