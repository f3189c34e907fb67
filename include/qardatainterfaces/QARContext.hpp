#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// The data of an archive as a whole: a version text and five keys. They are stored and never interpreted.
///
/// Ownership  The context holds copies. The key getters return references to its own members, which are valid as
///            long as the context.
/// Keys       The old bytes of a key are overwritten before their storage is released: when a setter replaces the
///            key, when the context is assigned to, and when it is destroyed. Assigning directly to an array that a
///            getter returned does not overwrite them.
/// Errors     Setters and copies may throw `std::bad_alloc`; they then change nothing.
/// Threads    Distinct contexts are independent. One context may be used by one thread at a time, since reading a key
///            through its getter moves the read position of that key.
class [[gnu::visibility("default")]] QARContext {
public:
  /// An empty version text and five keys without storage.
  QARContext();
  /// An independent copy; the read positions of its keys are 0.
  QARContext(const QARContext& other);
  /// Replaces everything with an independent copy; the read positions of the keys are 0.
  QARContext& operator=(const QARContext& other);
  virtual ~QARContext();

  /// Copies the bytes before the terminating zero. Throws `std::logic_error` for null and then changes nothing.
  void setVersionInfo(const char* versionInfo);
  /// A copy of the text.
  std::string getVersionInfo() const;

  /// Each setter copies all bytes of its argument, regardless of the argument's read position, and resets the read
  /// position of the key to 0. Setting a key to itself changes nothing.
  /// @{
  void setTarvoKey(const QARByteArray& key);
  void setCompilerKey(const QARByteArray& key);
  void setSolutionKey(const QARByteArray& key);
  void setEncSolutionKey(const QARByteArray& key);
  void setEncKeyHash(const QARByteArray& hash);
  /// @}

  /// The key itself, not a copy.
  /// @{
  QARByteArray& getTarvoKey();
  QARByteArray& getCompilerKey();
  QARByteArray& getSolutionKey();
  QARByteArray& getEncSolutionKey();
  QARByteArray& getEncKeyHash();
  /// @}

private:
  std::string versionInfo_;
  QARByteArray tarvoKey_;
  QARByteArray compilerKey_;
  QARByteArray solutionKey_;
  QARByteArray encSolutionKey_;
  QARByteArray encKeyHash_;
};

}  // namespace Korvane::qardatainterfaces
