#include <qardatainterfaces/QARContext.hpp>

#include "support/content.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace Korvane::qardatainterfaces {
namespace {

QARByteArray bytes(const std::string& text) { return {text}; }
char next(QARByteArray& key) {
  unsigned char byte = 0;
  return key.read(&byte, 1) == 1 ? static_cast<char>(byte) : '\0';
}

const struct Key {
  void (QARContext::*set)(const QARByteArray&);
  QARByteArray& (QARContext::*get)();
} keys[] = {{&QARContext::setTarvoKey, &QARContext::getTarvoKey},
            {&QARContext::setCompilerKey, &QARContext::getCompilerKey},
            {&QARContext::setSolutionKey, &QARContext::getSolutionKey},
            {&QARContext::setEncSolutionKey, &QARContext::getEncSolutionKey},
            {&QARContext::setEncKeyHash, &QARContext::getEncKeyHash}};

TEST(QARContext, CopiesEachKeyFromItsFirstByteAndHandsOutTheKeyItself) {
  for (const auto& [set, get] : keys) {
    QARContext context;
    QARByteArray argument = bytes("one");
    next(argument);
    (context.*set)(argument);
    argument = bytes("changed");
    for (const auto& other : keys) EXPECT_EQ(text((context.*other.get)()), other.get == get ? "one" : "");
    EXPECT_EQ(next((context.*get)()), 'o');
    (context.*set)((context.*get)());
    EXPECT_EQ(next((context.*get)()), 'n') << "setting a key to itself leaves its read position";
    (context.*set)(bytes("second, longer"));
    EXPECT_EQ(next((context.*get)()), 's');
    EXPECT_EQ(text((context.*get)()), "second, longer");
  }
}

TEST(QARContext, TakesTheVersionUpToTheFirstZero) {
  QARContext context;
  EXPECT_EQ(context.getVersionInfo(), "");
  context.setVersionInfo("1.0 \xFF\x80 \n\0no more");
  EXPECT_THROW(context.setVersionInfo(nullptr), std::logic_error);
  EXPECT_EQ(context.getVersionInfo(), "1.0 \xFF\x80 \n");
}

TEST(QARContext, CopiesAreIndependent) {
  QARContext context, assigned;
  context.setVersionInfo("1");
  for (const auto& key : keys) (context.*key.set)(bytes(std::string("k") + static_cast<char>('0' + (&key - keys))));
  next(context.getTarvoKey());
  assigned = context;
  QARContext copy(context);
  context = QARContext();
  EXPECT_EQ(context.getVersionInfo(), "");
  for (auto* const it : {&assigned, &copy}) {
    EXPECT_EQ(it->getVersionInfo(), "1");
    for (const auto& key : keys) {
      EXPECT_EQ(next((it->*key.get)()), 'k');
      EXPECT_EQ(next((it->*key.get)()), '0' + (&key - keys));
      EXPECT_EQ((context.*key.get)().size(), 0U);
    }
  }
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
