#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// What belongs to an archive as a whole: a version text and five keys, stored and handed back unread.
///
/// Ownership  The context holds copies. The references that the key getters return are to its own members and live
///            as long as it.
/// Keys       The bytes of a key are overwritten before their storage is released, when the key is set anew and
///            when the context is assigned to or destroyed. Assigning to an array that a getter returned does not.
/// Errors     Setters and copies throw `std::bad_alloc` and then change nothing.
/// Threads    Distinct contexts are independent. One context serves one thread at a time: reading a key through its
///            getter moves the read position of that key.
class [[gnu::visibility("default")]] QARContext {
public:
  /// An empty version text and five keys without storage.
  QARContext();
  /// An independent copy; the read positions of its keys are 0.
  QARContext(const QARContext& other);
  /// The same, in place of what was there.
  QARContext& operator=(const QARContext& other);
  virtual ~QARContext();

  /// Copies the bytes before the terminating zero. Throws `std::logic_error` for null and then changes nothing.
  void setVersionInfo(const char* versionInfo);
  /// A copy of the text.
  std::string getVersionInfo() const;

  /// Each setter copies all bytes, wherever the read position of its argument is, and puts the read position of the
  /// key to 0; setting a key to itself changes nothing.
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
