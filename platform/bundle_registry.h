// All bundles of the process. A bundle once known is never forgotten.
#pragma once

#include <string>
#include <string_view>

#include "platform/bundle.h"

namespace sok {

// The bundle of a folder; null when the path is no folder. Borrowed, as all bundles here.
Bundle* BundleAt(const std::string& path);

Bundle* MainBundle();

// Takes note of the images loaded now, then looks among all bundles: a loaded one, else the highest version, else the
// latest made. Null when none has the identifier.
Bundle* BundleWithIdentifier(std::u16string_view identifier);

}  // namespace sok
