#include "failure.hpp"

#include "../deliver.hpp"
#include "../reason.hpp"

#include <boost/filesystem/exception.hpp>
#include <qardatainterfaces/DeployedException.hpp>

#include <new>

namespace qarread {

Failure currentFailure() try { throw; } catch (const Korvane::rtxi18nutil::DeployedException& error) {
  return {error.identifier(), withReason(error)};
} catch (const ReadFailure& error) {
  return {error.status(), error.what()};
} catch (const boost::filesystem::filesystem_error& error) {
  return {"error", "cannot be examined" + inParentheses(error.code())};
} catch (const std::bad_alloc&) {
  return {"error", "not enough memory"};
} catch (const std::exception& error) {
  return {"error", error.what()};
}

}  // namespace qarread
