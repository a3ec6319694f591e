#include "output/ReplacedFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "output/PictureMark.h"

namespace KTX::VORTIME::TEST {
namespace {

namespace fs = std::filesystem;

class ReplacedFile : public ::testing::Test {
 protected:
  // Tests of this fixture may run at the same time.
  ReplacedFile()
      : folder(fs::current_path() /
               (std::string("replaced_file_") +
                ::testing::UnitTest::GetInstance()->current_test_info()->name())) {
    fs::remove_all(folder);
    fs::create_directory(folder);
  }
  ~ReplacedFile() override { fs::remove_all(folder); }

  std::string name(std::string const& file) const { return (folder / file).string(); }

  void write(std::string const& file, std::string const& content) const {
    std::ofstream(folder / file, std::ios::binary) << content;
  }

  std::string read(std::string const& file) const {
    std::ifstream in(folder / file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

  std::size_t count() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  fs::path const folder;
};

TEST_F(ReplacedFile, TakesTheNameOnlyWhenItIsWhole) {
  write("f", "old");
  ReplacedFileC file;
  ASSERT_TRUE(file.claim(name("f")));
  ASSERT_TRUE(file.begin());
  write("f.part", "new");
  EXPECT_EQ("old", read("f"));
  EXPECT_TRUE(file.commit());
  EXPECT_EQ("new", read("f"));
  EXPECT_EQ(1U, count());
}

TEST_F(ReplacedFile, LeavesNothingWithoutCommit) {
  write("f", "old");
  {
    ReplacedFileC changed;
    ReplacedFileC created;
    ASSERT_TRUE(changed.claim(name("f")) && changed.begin());
    ASSERT_TRUE(created.claim(name("g")) && created.begin());
    EXPECT_EQ(4U, count());
  }
  EXPECT_EQ("old", read("f"));
  EXPECT_EQ(1U, count());
}

TEST_F(ReplacedFile, KeepsWhatAnotherWroteIntoTheFileThatItCreated) {
  {
    ReplacedFileC file;
    ASSERT_TRUE(file.claim(name("f")) && file.begin());
    write("f", "of another");
  }
  EXPECT_EQ("of another", read("f"));
}

TEST_F(ReplacedFile, IsReplaceableWithItsMarkAtBothEnds) {
  FileMarkC const mark{"ab", "yz"};
  struct {
    char const* content;
    bool isReplaceable;
  } const cases[] = {{"", true},     {"abyz", true}, {"ab yz", true},  {"aby", false},
                     {"abz", false}, {"byz", false}, {"abyz ", false}, {" abyz", false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.content);
    write("f", c.content);
    ReplacedFileC file;
    ASSERT_TRUE(file.claim(name("f")));
    EXPECT_EQ(c.isReplaceable, file.isReplaceable(mark));
  }
}

TEST_F(ReplacedFile, PassesOverUnfinishedFilesOfOthersUpToALimit) {
  for (int i = 1; i < 100; ++i) {
    write("f.part" + (i == 1 ? std::string() : std::to_string(i)), "x");
  }
  ReplacedFileC last;
  ASSERT_TRUE(last.claim(name("f")));
  ASSERT_TRUE(last.begin());
  EXPECT_TRUE(fs::exists(folder / "f.part100"));
  ReplacedFileC tooLate;
  ASSERT_TRUE(tooLate.claim(name("f")));
  EXPECT_FALSE(tooLate.begin());
  EXPECT_FALSE(tooLate.errorText().empty());
}

TEST_F(ReplacedFile, TellsThatTheNameCannotBeTaken) {
  ReplacedFileC file;
  ASSERT_TRUE(file.claim(name("f")) && file.begin());
  fs::remove(folder / "f");
  fs::create_directory(folder / "f");
  write("f/inside", "x");
  EXPECT_FALSE(file.commit());
  EXPECT_FALSE(file.errorText().empty());
  EXPECT_EQ("x", read("f/inside"));
}

TEST_F(ReplacedFile, HasOneIdentityByAllItsNames) {
  ReplacedFileC file;
  ReplacedFileC same;
  ReplacedFileC other;
  ASSERT_TRUE(file.claim(name("f")) && same.claim(name("./f")) && other.claim(name("g")));
  EXPECT_TRUE(file.identity().isSameFile(same.identity()));
  EXPECT_FALSE(file.identity().isSameFile(other.identity()));
  EXPECT_FALSE(identityOfFile(name("")).isSameFile(identityOfFile(name(""))));
  EXPECT_FALSE(identityOfFile(name("none")).isSameFile(identityOfFile(name("none"))));
  EXPECT_EQ(FILEKIND_MISSING, identityOfDescriptor(-1).kind);
}

TEST_F(ReplacedFile, MarksPicturesAndNothingElse) {
  std::string const png =
      std::string("\x89PNG\r\n") + std::string(4, '\0') + "IEND\xAE\x42\x60\x82";
  struct {
    PictureFormatE format;
    std::string content;
    bool isPicture;
  } const cases[] = {{PICTURE_PNG, png, true},
                     {PICTURE_PNG, png + "x", false},
                     {PICTURE_PNG, png.substr(0, png.size() - 1), false},
                     {PICTURE_PNG, "", false},
                     {PICTURE_SVG, "<?xml?><svg></svg>", true},
                     {PICTURE_SVG, "<?xml?><svg></svg>\r\n\n", true},
                     {PICTURE_SVG, "<?xml?><svg></svg>x", false},
                     {PICTURE_SVG, "<?xml?><svg>", false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.content);
    write("p", c.content);
    EXPECT_EQ(c.isPicture, markPicture(name("p"), c.format));
    ReplacedFileC file;
    ASSERT_TRUE(file.claim(name("p")));
    EXPECT_EQ(c.isPicture || c.content.empty(), file.isReplaceable(pictureMark(c.format)));
    if (!c.isPicture) {
      EXPECT_EQ(c.content, read("p"));
    }
  }
  EXPECT_FALSE(markPicture(name("none"), PICTURE_PNG));
}

}  // namespace
}  // namespace KTX::VORTIME::TEST
