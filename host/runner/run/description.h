// What an extension bundle says about itself when it is started.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace sok {

// Starts the extension in a process of its own: "bundle", "identifier", "interface_version", "languages", "commands"
// ("number", "texts"), "missing_texts", "interface", "missing_exports", "other_exports", "alerts". Throws InputError.
nlohmann::ordered_json DescribeExtension(const std::string& plugin);

}  // namespace sok
