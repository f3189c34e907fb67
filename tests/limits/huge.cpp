// Calls each converter once with more text than ICU takes in one call, and reads more than one system call returns.
#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <cstdlib>
#include <iostream>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

bool reads_all_that_a_file_has_grown() {
  constexpr long size = 5'000'000'000;
  const int file = ::memfd_create("sparse", 0);
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const bool small = ::ftruncate(file, 1) == 0;
  const auto reader = Korvane::qardatainterfaces::QARFileReaderFactory().getRuntimeReader({path.begin(), path.end()});
  return small && ::ftruncate(file, size) == 0 && reader->readAll().size() == size;
}

int fail(const char* what) {
  std::cout << "WRONG: " << what << '\n';
  return EXIT_FAILURE;
}

int main() {
  if (!reads_all_that_a_file_has_grown()) return fail("growth");
  std::cout << "right: all 5 GB of a file that had one byte\n";
  const std::size_t count = (std::size_t{1} << 30) + 12345;
  std::u16string text(count, u'a');
  text.back() = u'\u00E9';
  const auto bytes = ku::i18n::codecvt_ustring_to_string("ISO-8859-1", false).convert(text.data(), count);
  if (bytes.size() != count || bytes.back() != '\xE9') return fail("UTF-16");
  text.clear();
  text.shrink_to_fit();
  text = ku::i18n::codecvt_string_to_ustring("ISO-8859-1", false).convert(bytes.data(), count);
  if (text.size() != count || text.back() != u'\u00E9') return fail("room");
  std::cout << "right: more than 2 GiB of UTF-16, and room for as much\n";
}
