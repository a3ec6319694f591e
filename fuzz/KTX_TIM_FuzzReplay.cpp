// Runs a fuzz target over files: each argument is a file, or a folder whose files are all taken.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    std::filesystem::path const path(argv[i]);
    if (!std::filesystem::is_directory(path)) {
      files.push_back(path);
      continue;
    }
    for (auto const& entry : std::filesystem::directory_iterator(path)) {
      files.push_back(entry.path());
    }
  }
  return files;
}

bool replay(std::filesystem::path const& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::fprintf(stderr, "cannot open %s\n", path.string().c_str());
    return false;
  }
  std::string const text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::vector<std::uint8_t> const bytes(text.begin(), text.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t replayed = 0;
  for (auto const& path : filesOf(argc, argv)) {
    if (!replay(path)) {
      return 1;
    }
    ++replayed;
  }
  std::printf("%zu files replayed\n", replayed);
  return replayed > 0 ? 0 : 1;
}
