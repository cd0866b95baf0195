#include "host/runner/report/page.h"

#include <kainjow/mustache.hpp>

#include "host/runner/report/embedded.h"

namespace sok {
namespace {

namespace mustache = kainjow::mustache;

mustache::data ToMustache(const Json& json) {
  if (json.is_string()) return json.get<std::string>();
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_object()) {
    mustache::data object{mustache::data::type::object};
    for (const auto& [name, value] : json.items()) object.set(name, ToMustache(value));
    return object;
  }
  if (json.is_array()) {
    mustache::data list{mustache::data::type::list};
    for (const Json& value : json) list.push_back(ToMustache(value));
    return list;
  }
  return json.is_null() ? mustache::data(false) : mustache::data(json.dump());
}

std::string Rendered(const char* text, const Json& data) { return mustache::mustache(text).render(ToMustache(data)); }

}  // namespace

std::string Page(const std::string& title, const char* body_template, const Json& data) {
  return Rendered(
      kPageTemplate,
      {{"title", title}, {"style", kReportStyle}, {"script", kReportScript}, {"body", Rendered(body_template, data)}});
}

}  // namespace sok
