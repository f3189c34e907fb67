// Any order of reads from a stream that behaves as badly as it may.

#include "input.hpp"
#include "support/HostileStream.hpp"
#include "support/ScriptedTransform.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

using namespace Korvane::qardatainterfaces;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".t"}, new ScriptedTransform(ScriptedTransform::copy));
  const bool transforms = input.number() % 2 == 1;
  const auto idle = static_cast<int>(input.number() % 110);
  const bool stalls = idle >= 100;
  HostileStream::Manners manners{1 + input.number() * 40UL, idle, false, ~0UL};
  if (const auto at = input.number(); at > 0) manners.throws_at = at * 50;
  const auto content = pattern(input.number() * manners.most / 8);  // of not too many reads
  HostileStream stream(content, manners);
  const auto reader = factory.getReader(transforms ? u"x.t" : u"x", stream);
  std::string seen;
  for (int reads = 0; reads < 40 && !input.empty(); ++reads) try {
      const auto count = input.number() * 16;
      if (count == 0) {
        const auto whole = text(reader->readAll());
        require(transforms ? whole.empty() || whole == content : content.find(whole) != content.npos);
        if (!transforms && !stalls && reader->readSucceeded() && seen.empty()) require(whole == content);
        if (!transforms && reader->readSucceeded()) break;  // the rest has been gathered
      } else if (const auto next = chunk(*reader, count); next != refused) {
        seen += next;
        require(content.compare(0, seen.size(), seen) == 0);
      }
    } catch (const std::runtime_error&) {
    }
  return 0;
}
