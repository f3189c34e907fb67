#pragma once

#include <stdexcept>
#include <string>

namespace packing {

/// The archive holds something that must not be unpacked, or is damaged.
class BadArchive : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The name of an entry below the directory that the archive is unpacked to: without empty and "." elements; empty
/// for the directory itself. Throws `BadArchive` for a name that leads out of it.
std::string relativeName(const std::string& name);

/// Whether a link of that (relative) name may lead out of the directory, whatever else is in there. A target is safe
/// if it is relative and goes up no further than the link is deep, and only at its start: past a name, which may be
/// another link, nobody knows what ".." means.
bool mayLeadOut(const std::string& name, const std::string& target);

}  // namespace packing
