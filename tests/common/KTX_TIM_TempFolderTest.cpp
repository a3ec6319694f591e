#include "common/KTX_TIM_TempFolder.h"

#include <memory>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(TempFolder, GivesBackTheBytesOfAFile) {
  TempFolderC const folder;
  std::string const bytes("a\r\nb\n\0c", 7);
  auto const path = folder.write("file", bytes);
  EXPECT_EQ(folder.path() / "file", path);
  EXPECT_EQ(bytes, folder.read("file"));
}

TEST(TempFolder, IsOneOfItsOwnAndGoesWithWhatItHolds) {
  auto first = std::make_unique<TempFolderC>();
  TempFolderC const second;
  auto const path = first->path();
  EXPECT_NE(path, second.path());
  first->write("file", "content");
  EXPECT_TRUE(std::filesystem::exists(path));
  first.reset();
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace KTX::TIM::TEST
