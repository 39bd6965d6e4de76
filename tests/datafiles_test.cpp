// Where the program finds its help and its control code reference, built or
// installed, and the help's search.

#include <gtest/gtest.h>

#include <unistd.h>
#include <filesystem>
#include <fstream>

#include "support/datafiles.h"

namespace zelvan {
namespace {

namespace fs = std::filesystem;

struct DataFiles : ::testing::Test {
    fs::path root = fs::temp_directory_path() / ("zelvan-data-" + std::to_string(::getpid()));
    std::string bin = (root / "bin").string(), here = (root / "here").string();
    void TearDown() override { fs::remove_all(root); }
    std::string put(const fs::path& rel, const std::string& text = "x") {
        fs::create_directories((root / rel).parent_path());
        std::ofstream(root / rel) << text;
        return (root / rel).string();
    }
};

// Each file found wins over the ones before it.
TEST_F(DataFiles, FilesAreFoundWhereTheyStandAndSearched) {
    fs::create_directories(bin);  // the installed folder is found through it
    EXPECT_EQ(findHelpIndex(bin), bin + "/HelpFiles/index.htm") << "none: empty page";
    EXPECT_EQ(findAnsiReference(here, bin), here + "/ansi.rtf");
    for (const char* rel : {"share/zelvan21/HelpFiles/Index.htm", "bin/HelpFiles/index.htm"}) {
        const std::string path = put(rel);
        EXPECT_EQ(findHelpIndex(bin), path);
    }
    for (const char* rel : {"share/zelvan21/ansi.rtf", "bin/ansi.rtf", "here/ansi.rtf"}) {
        const std::string path = put(rel);
        EXPECT_EQ(findAnsiReference(here, bin), path);
    }
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
