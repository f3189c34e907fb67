#pragma once

#include <stdexcept>
#include <string>

namespace packing {

/// The archive is damaged, or has an entry that must not be unpacked.
class BadArchive : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The name of an entry relative to the directory that the archive is unpacked to, without empty and "." elements;
/// empty for the directory itself. Throws `BadArchive` for a name that leads out of it.
std::string relativeName(const std::string& name);

/// Whether a link of this relative name may lead out of the directory, regardless of the other entries. A target is
/// safe if it is relative, has no more ".." elements than the link is deep, and has them only at its start. After a
/// name, which may itself be a link, the meaning of ".." is unknown.
bool mayLeadOut(const std::string& name, const std::string& target);

}  // namespace packing
