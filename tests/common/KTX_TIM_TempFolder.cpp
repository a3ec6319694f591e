#include "common/KTX_TIM_TempFolder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {

TempFolderC::TempFolderC() {
  std::random_device random;
  do {
    folder = std::filesystem::temp_directory_path() / ("vortime-test-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(folder));
}

TempFolderC::~TempFolderC() {
  std::error_code error;
  std::filesystem::remove_all(folder, error);
}

std::filesystem::path TempFolderC::write(std::filesystem::path const& name,
                                         std::string const& content) const {
  auto path = folder / name;
  std::ofstream stream(path, std::ios::binary);
  stream << content;
  EXPECT_TRUE(stream.flush().good()) << path;
  return path;
}

std::string TempFolderC::read(std::filesystem::path const& name) const {
  std::ifstream stream(folder / name, std::ios::binary);
  EXPECT_TRUE(stream.is_open()) << folder / name;
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace KTX::TIM::TEST
