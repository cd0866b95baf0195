// Who may use a file, and what else the file system keeps about it beside its bytes.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>

namespace sok {

struct Rights {
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;                                // permission bits; with an access list the group's are its mask
  std::map<std::string, std::string> attributes;  // extended ones, by name; the access list is one of them

  bool operator==(const Rights&) const = default;
};

// The rights of an open file. Attributes that the file system does not have, or does not show, are not among them.
Rights RightsOf(int file);

// Gives a file these rights as far as it can be done, the group also where the owner cannot be changed; whether the
// file has them now.
bool GiveRights(const Rights& rights, int file);

}  // namespace sok
