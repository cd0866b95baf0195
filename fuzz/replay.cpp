// Stands in for libFuzzer where that is not linked: a smoke run over the seeds of the folders given, each as it is and
// changed in ways that are the same every time.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace {

constexpr int kChangesOfEach = 100;

void Run(const std::string& bytes) {
  const std::vector<uint8_t> exact(bytes.begin(), bytes.end());  // reading beyond it is seen
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

// Cuts the text, repeats a part of it, or writes over some of its bytes.
std::string Changed(std::string bytes, std::mt19937& random) {
  const std::size_t at = random() % (bytes.size() + 1);
  switch (random() % 4) {
    case 0:
      return bytes.substr(0, at);
    case 1:
      return bytes.insert(random() % (bytes.size() + 1), bytes.substr(at, random() % 16));
    default:
      for (std::size_t i = at; i < std::min(bytes.size(), at + 1 + random() % 3); ++i)
        bytes[i] = static_cast<char>(random());
      return bytes;
  }
}

}  // namespace

int main(int count, char** folders) {
  std::vector<std::filesystem::path> seeds;
  for (int i = 1; i < count; ++i) {
    for (const auto& file : std::filesystem::directory_iterator(folders[i])) seeds.push_back(file.path());
  }
  std::sort(seeds.begin(), seeds.end());
  std::mt19937 random(1);
  for (const std::filesystem::path& seed : seeds) {
    std::printf("%s\n", seed.c_str());
    std::fflush(stdout);
    std::ifstream file(seed, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    Run(bytes);
    for (int i = 0; i < kChangesOfEach; ++i) Run(Changed(bytes, random));
  }
  return seeds.empty() ? 1 : 0;
}
