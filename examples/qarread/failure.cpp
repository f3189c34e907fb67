#include "failure.hpp"

#include "../deliver.hpp"
#include "../reason.hpp"

#include <boost/filesystem/exception.hpp>
#include <qardatainterfaces/DeployedException.hpp>

#include <new>

namespace qarread {
namespace {

constexpr const char* notEnoughMemory = "not enough memory";

}  // namespace

Failure currentFailure() try { throw; } catch (const Korvane::rtxi18nutil::DeployedException& error) {
  // The encodings have been checked, so memory is the only reason left for this one.
  const bool lacksMemory = error.identifier() == "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER";
  return {error.identifier(), lacksMemory ? notEnoughMemory : withReason(error)};
} catch (const ReadFailure& error) {
  return {error.status(), error.what()};
} catch (const boost::filesystem::filesystem_error& error) {
  return {"error", "cannot be examined" + inParentheses(error.code())};
} catch (const std::bad_alloc&) {
  return {"error", notEnoughMemory};
} catch (const std::exception& error) {
  return {"error", error.what()};
}

}  // namespace qarread
