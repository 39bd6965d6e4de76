#pragma once
// Where the program finds the files that stand beside it, the help pages and
// the control code reference, whether it runs from its build folder or from
// an installed prefix (bin/ beside share/zelvan21/), and the help's search.

#include <cstddef>
#include <optional>
#include <string>

namespace zelvan {

// The data folder of an installed program, relative to the folder of the
// program itself.
inline constexpr const char* kInstalledDataDir = "../share/zelvan21";

// The help's way in. The pages are looked for in "HelpFiles" beside the
// program, then in the installed data folder; in each, "index.htm" and then
// "Index.htm", since a case-sensitive file system tells the two apart. With
// neither found, the address beside the program, which then shows an empty
// page.
std::string findHelpIndex(const std::string& programDir);

// The control code reference is read from the current directory first, so
// that an operator can keep an edited copy where the program is started, then
// beside the program (the build folder), then from the installed data folder.
// With none found, the current directory's name, which loads as nothing.
std::string findAnsiReference(const std::string& currentDir, const std::string& programDir);

// A whole file, or nothing if it can't be read or is larger than limit.
std::optional<std::string> readWholeFile(const std::string& path,
                                         std::size_t limit = 16 * 1024 * 1024);

// An HTML page listing the help pages of folder (*.htm, *.html) whose text
// holds word, in any case, each linked by its file URL and shown by its title.
std::string helpSearchPage(const std::string& folder, const std::string& word);

}  // namespace zelvan
