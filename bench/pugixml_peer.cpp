// The peer of whole sokrun runs: pugixml's own load and save of a file. Usage: pugixml_peer IN OUT
#include <cstdio>
#include <pugixml.hpp>

int main(int count, char** arguments) {
  if (count != 3) return 2;
  pugi::xml_document document;
  const pugi::xml_parse_result result = document.load_file(arguments[1], pugi::parse_full);
  if (!result) {
    std::fprintf(stderr, "%s: %s\n", arguments[1], result.description());
    return 1;
  }
  return document.save_file(arguments[2], "", pugi::format_raw) ? 0 : 1;
}
