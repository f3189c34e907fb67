#pragma once

#include "content.hpp"

#include <qardatainterfaces/QARContext.hpp>
#include <qardatainterfaces/QARData.hpp>

/// Everything observable of a value, as text.
namespace Korvane::qardatainterfaces {

inline std::string seen(const std::u16string& text) { return {text.begin(), text.end()}; }  // enough for ASCII
inline std::string seen(const QARMetaData& meta) { return meta.getUserData() + (meta.isDemo() ? "+" : "-"); }
inline std::string seen(const QARRecordData& record) { return seen(record.getName()) + seen(record.getMetaData()); }
inline std::string seen(const QARByteArray& bytes) { return bytes.begin() == nullptr ? "none" : text(bytes); }

inline std::string seen(QARContext& context) {
  return context.getVersionInfo() + ',' + seen(context.getTarvoKey()) + ',' + seen(context.getCompilerKey()) + ',' +
         seen(context.getSolutionKey()) + ',' + seen(context.getEncSolutionKey()) + ',' +
         seen(context.getEncKeyHash());
}

inline std::string seen(QARData& data) {
  std::string all;
  for (const auto& [name, record] : data.getFileMap()) all += seen(name) + '=' + seen(record) + ' ';
  for (const auto& [name, value] : data.getRootMacroMap()) all += '$' + seen(name) + '=' + seen(value) + ' ';
  for (const auto& path : data.getTarvoPathVector()) all += "t:" + seen(path) + ' ';
  for (const auto& path : data.getClassPathVector()) all += "c:" + seen(path) + ' ';
  return all;
}

}  // namespace Korvane::qardatainterfaces
