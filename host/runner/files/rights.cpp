#include "host/runner/files/rights.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstring>

namespace sok {
namespace {

// What a query that takes a buffer and tells the size answers; empty where there is nothing.
template <typename Query>
std::string Answered(Query&& query) {
  const ssize_t size = query(nullptr, 0);
  if (size <= 0) return {};
  std::string answer(static_cast<std::size_t>(size), '\0');
  const ssize_t filled = query(answer.data(), answer.size());
  answer.resize(filled > 0 ? static_cast<std::size_t>(filled) : 0);
  return answer;
}

std::map<std::string, std::string> AttributesOf(int file) {
  std::map<std::string, std::string> attributes;
  const std::string names = Answered([&](char* to, std::size_t size) { return flistxattr(file, to, size); });
  for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1) {
    const char* const name = names.c_str() + at;
    attributes[name] = Answered([&](char* to, std::size_t size) { return fgetxattr(file, name, to, size); });
  }
  return attributes;
}

}  // namespace

Rights RightsOf(int file) {
  struct stat status {};
  fstat(file, &status);
  return {status.st_uid, status.st_gid, status.st_mode & 07777, AttributesOf(file)};
}

bool GiveRights(const Rights& rights, int file) {
  if (fchown(file, rights.owner, rights.group) != 0 && fchown(file, static_cast<uid_t>(-1), rights.group) != 0) {
    return false;
  }
  // The folder may have given the file an access list of its own.
  for (const auto& [name, value] : AttributesOf(file)) {
    if (!rights.attributes.contains(name)) fremovexattr(file, name.c_str());
  }
  for (const auto& [name, value] : rights.attributes) fsetxattr(file, name.c_str(), value.data(), value.size(), 0);
  return fchmod(file, rights.mode) == 0 && RightsOf(file) == rights;
}

}  // namespace sok
