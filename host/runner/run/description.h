// What an extension bundle says about itself when it is started.
#pragma once

#include <string>

#include "host/runner/report/json.h"

namespace sok {

// Starts the extension in a process of its own: "bundle", "identifier", "interface_version", "languages", "commands"
// ("number", "texts"), "missing_texts", "interface", "missing_exports", "other_exports", "alerts". Throws Error.
Json DescribeExtension(const std::string& plugin);

}  // namespace sok
