// The user's languages, and which of a bundle's language folders serve them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sok {

// The user's languages, the most wanted first: those of LANGUAGE (separated by colons), then LC_ALL, LC_MESSAGES and
// LANG. "C" and "POSIX" ask for no translation and end the list.
std::vector<std::string> PreferredLanguages();

// The languages, among those that a bundle has folders for, in which to look for its files: the first of `preferred`
// that matches, with its own variants; then the development region; then "Base". When nothing matches, "en" or the
// first of `available`.
std::vector<std::string> ChooseLanguages(const std::vector<std::string>& preferred,
                                         const std::vector<std::string>& available,
                                         std::string_view development_region);

}  // namespace sok
