// URLs of files.
#pragma once

#include <string>

#include "platform/object.h"

struct __CFURL final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kUrl;

  __CFURL(std::string absolute_path, bool names_directory);
  std::u16string Description() const override;

  const std::string path;  // without a slash at its end, except for the root
  const bool is_directory;
};

namespace sok {
using Url = ::__CFURL;
}
