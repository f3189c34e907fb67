#pragma once

#include <gtest/gtest.h>
#include <qardatainterfaces/QARPath.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

/// A directory for the files of one test, empty at first, which any user may search.
class TemporaryDirectory {
public:
  TemporaryDirectory() {
    EXPECT_NE(::mkdtemp(path_.data()), nullptr);
    std::filesystem::permissions(path_, std::filesystem::perms(0755));
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::string native(const std::string& name) const { return path_ + "/" + name; }
  std::u16string path(const std::string& name) const {
    return Korvane::qardatainterfaces::QARPath::fromNative(native(name));
  }
  /// Creates the file or replaces its content, and returns its path.
  std::u16string file(const std::string& name, const std::string& content) const {
    std::ofstream(native(name), std::ios::binary) << content;
    return path(name);
  }
  std::u16string link(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, native(name));
    return path(name);
  }

private:
  std::string path_ = testing::TempDir() + "zrqarXXXXXX";
};
