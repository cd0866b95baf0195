#include "platform/languages.h"

#include <algorithm>
#include <cstdlib>

namespace sok {
namespace {

struct OldName {
  std::string_view code;
  std::string_view name;
};

// Folders of older bundles bear the English name of their language.
constexpr OldName kOldNames[] = {{"da", "Danish"},    {"de", "German"},     {"en", "English"},  {"es", "Spanish"},
                                 {"fr", "French"},    {"it", "Italian"},    {"ja", "Japanese"}, {"nl", "Dutch"},
                                 {"no", "Norwegian"}, {"pt", "Portuguese"}, {"sv", "Swedish"}};

// One spelling for the ways to write a language: de_AT and de-AT, English and en.
std::string Canonical(std::string_view language) {
  for (const OldName& old : kOldNames) {
    if (old.name == language) return std::string(old.code);
  }
  std::string code(language);
  std::replace(code.begin(), code.end(), '_', '-');
  if (code == "zh-CN" || code == "zh-SG") return "zh-Hans-" + code.substr(3);
  if (code == "zh-TW" || code == "zh-HK" || code == "zh-MO") return "zh-Hant-" + code.substr(3);
  return code;
}

void AppendOnce(std::vector<std::string>& list, const std::string& language) {
  if (std::find(list.begin(), list.end(), language) == list.end()) list.push_back(language);
}

// Appends the folders that serve a language: its own, then those of the less particular forms of it (de-AT, de); when
// there are none, those of other regions.
void AppendMatches(std::vector<std::string>& chosen, std::string_view language,
                   const std::vector<std::string>& available) {
  const std::size_t before = chosen.size();
  std::string form = Canonical(language);
  for (;;) {
    for (const std::string& folder : available) {
      if (Canonical(folder) == form) AppendOnce(chosen, folder);
    }
    const std::size_t dash = form.rfind('-');
    if (dash == form.npos) break;
    form.resize(dash);
  }
  if (chosen.size() > before) return;
  for (const std::string& folder : available) {
    if (Canonical(folder).starts_with(form + "-")) AppendOnce(chosen, folder);
  }
}

}  // namespace

std::vector<std::string> PreferredLanguages() {
  std::vector<std::string> languages;
  for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    std::string_view rest = value != nullptr ? value : "";
    while (!rest.empty()) {
      const std::size_t colon = std::min(rest.find(':'), rest.size());
      const std::string_view locale = rest.substr(0, colon);
      const std::string language(locale.substr(0, locale.find_first_of(".@")));  // without the character set
      if (language == "C" || language == "POSIX") return languages;
      if (!language.empty()) languages.push_back(language);
      rest.remove_prefix(std::min(colon + 1, rest.size()));
    }
  }
  return languages;
}

std::vector<std::string> ChooseLanguages(const std::vector<std::string>& preferred,
                                         const std::vector<std::string>& available,
                                         std::string_view development_region) {
  std::vector<std::string> chosen;
  for (const std::string& language : preferred) {
    AppendMatches(chosen, language, available);
    if (!chosen.empty()) break;
  }
  if (!development_region.empty()) AppendMatches(chosen, development_region, available);
  if (std::find(available.begin(), available.end(), "Base") != available.end()) AppendOnce(chosen, "Base");
  if (chosen.empty()) AppendMatches(chosen, "en", available);
  if (chosen.empty() && !available.empty()) chosen.push_back(available.front());
  return chosen;
}

}  // namespace sok
