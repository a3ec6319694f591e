#include "support/KTX_TIM_RegularFile.h"

#include <array>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "common/KTX_TIM_TempFolder.h"

namespace KTX::TIM::TEST {
namespace {

TEST(RegularFile, IsReadInPiecesToItsEnd) {
  TempFolderC const folder;
  RegularFileC const file(folder.write("file", "0123456789").native());
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ(10, file.getSize());
  std::array<char, 7> bytes{};
  EXPECT_EQ(7, file.read(bytes.data(), bytes.size()));
  EXPECT_EQ("0123456", std::string(bytes.data(), 7));
  EXPECT_EQ(3, file.read(bytes.data(), bytes.size()));
  EXPECT_EQ("789", std::string(bytes.data(), 3));
  EXPECT_EQ(0, file.read(bytes.data(), bytes.size()));
}

TEST(RegularFile, MayBeEmpty) {
  TempFolderC const folder;
  RegularFileC const file(folder.write("file", "").native());
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ(0, file.getSize());
  char byte = 'x';
  EXPECT_EQ(0, file.read(&byte, 1));
  EXPECT_EQ('x', byte);
}

TEST(RegularFile, IsNotOpenWhereThereIsNone) {
  TempFolderC const folder;
  for (auto const& path : {folder.path(), folder.path() / "missing", std::filesystem::path()}) {
    SCOPED_TRACE(path);
    RegularFileC const file(path.native());
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(0, file.getSize());
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
