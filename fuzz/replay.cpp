// Runs a target on all files in the given folders, without the fuzzer.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int, char** folders) {
  std::size_t inputs = 0;
  while (*++folders != nullptr)
    for (const auto& entry : std::filesystem::directory_iterator(*folders)) {
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++inputs;
    }
  std::printf("%zu inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
