// Where the program finds its help and its control code reference, built or
// installed, and the help's search.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/datafiles.h"

namespace zelvan {
namespace {

namespace fs = std::filesystem;

struct DataFiles : ::testing::Test {
    fs::path root =
        fs::temp_directory_path() /
        ("zelvan-data-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
         ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { fs::create_directories(root); }
    void TearDown() override { fs::remove_all(root); }
    std::string put(const fs::path& rel, const std::string& text = "x") {
        fs::create_directories((root / rel).parent_path());
        std::ofstream(root / rel) << text;
        return (root / rel).string();
    }
};

TEST_F(DataFiles, HelpIndexIsFoundInEitherCaseBesideTheProgramOrInstalled) {
    const std::string bin = (root / "bin").string();
    fs::create_directories(bin);
    EXPECT_EQ(findHelpIndex(bin), (root / "bin/HelpFiles/index.htm").string())
        << "none: empty page";
    const std::string installed = put("share/zelvan21/HelpFiles/Index.htm");
    EXPECT_EQ(findHelpIndex(bin), installed);
    const std::string beside = put("bin/HelpFiles/index.htm");
    EXPECT_EQ(findHelpIndex(bin), beside);
}

TEST_F(DataFiles, ReferenceIsReadFromTheCurrentDirectoryFirst) {
    const std::string bin = (root / "bin").string();
    const std::string here = (root / "here").string();
    fs::create_directories(here);
    fs::create_directories(bin);
    EXPECT_EQ(findAnsiReference(here, bin), here + "/ansi.rtf");
    const std::string installed = put("share/zelvan21/ansi.rtf");
    EXPECT_EQ(findAnsiReference(here, bin), installed);
    const std::string beside = put("bin/ansi.rtf");
    EXPECT_EQ(findAnsiReference(here, bin), beside);
    const std::string own = put("here/ansi.rtf");
    EXPECT_EQ(findAnsiReference(here, bin), own);
}

TEST_F(DataFiles, SearchListsThePagesWhoseTextHoldsTheWord) {
    put("help/a.htm", "<html><title>Roll-up captions</title><p>A ROLL-UP line</p></html>");
    put("help/b.htm", "<a href=\"roll-up.htm\">elsewhere</a>");
    put("help/c.txt", "roll-up");
    const std::string page = helpSearchPage((root / "help").string(), "roll-up");
    EXPECT_NE(page.find("Roll-up captions</a>"), std::string::npos) << page;
    EXPECT_NE(page.find("file://" + (root / "help/a.htm").string()), std::string::npos);
    EXPECT_EQ(page.find("b.htm"), std::string::npos) << "a word inside a tag is no match";
    EXPECT_EQ(page.find("c.txt"), std::string::npos);
    EXPECT_NE(helpSearchPage((root / "help").string(), "absent").find("No help page"),
              std::string::npos);
}

}  // namespace
}  // namespace zelvan
