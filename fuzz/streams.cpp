// Any sequence of reads from a stream that is as inconvenient as its contract allows.

#include "input.hpp"
#include "support/HostileStream.hpp"
#include "support/ScriptedTransform.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

using namespace Korvane::qardatainterfaces;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static auto& transform = *new ScriptedTransform(ScriptedTransform::copy);
  static auto& factory = *[] {
    auto* const made = new QARFileReaderFactory;
    made->addFileTypeHandler({u".t"}, &transform);
    return made;
  }();
  static const std::string bytes = pattern(std::size_t{1} << 15);
  transform.inputs.clear();

  // The number of successive empty reads; 100 of them are an error.
  static constexpr int idle[] = {0, 0, 0, 1, 2, 99, 100};
  static constexpr std::size_t most[] = {1, 2, 100, 1000, 8191, 8192, 8193, ~0UL};
  Input input(data, size);
  const bool transforms = input.number() % 2 == 1;
  HostileStream::Manners manners{input.one_of(most), input.one_of(idle), input.number() % 16 == 1, ~0UL};
  const bool stalls = manners.idle >= 100;
  if (const auto at = input.number(); at > 0) manners.throws_at = at * 50;
  const auto length = input.number() * 128UL;  // limited, so that the number of reads is limited
  const auto content = bytes.substr(0, manners.most < 256 ? std::min(length, manners.most * 32) : length);
  HostileStream stream(content, manners);
  const auto reader = factory.getReader(transforms ? u"x.t" : u"x", stream);
  std::size_t seen = 0;
  for (int reads = 0; reads < 40 && !input.empty(); ++reads) try {
      if (const auto count = input.number() * 16; count > 0) {
        const auto next = chunk(*reader, count);
        require(next != refused ? content.compare(seen, next.size(), next) == 0 : transforms && stalls);
        if (next != refused) seen += next.size();
      } else {
        const auto whole = text(reader->readAll());
        if (!reader->readSucceeded())
          require(stalls && whole.empty());
        else if (transforms)
          require(whole == content);
        else
          require(content.compare(seen, content.npos, whole) == 0);
        if (!transforms && reader->readSucceeded()) break;  // nothing is left to read
      }
    } catch (const std::runtime_error&) {
    }
  return 0;
}
