#pragma once
// A reader for plain rich text files, enough for the control code reference:
// groups, control words, paragraphs, tabs, bold, italic, underline, font
// sizes, escaped and Unicode characters and simple tables. Destinations that
// carry no text (font and colour tables, document info, pictures, anything
// marked \*) are skipped. Broken input never fails: the reader keeps whatever
// it could make sense of.

#include <string>
#include <string_view>
#include <vector>

namespace zelvan::rtf {

struct Run {
    std::string text;  // UTF-8
    bool bold = false;
    bool italic = false;
    bool underline = false;
    int halfPoints = 24;  // font size in half points, as \fs gives it

    bool sameLook(const Run& o) const {
        return bold == o.bold && italic == o.italic && underline == o.underline &&
               halfPoints == o.halfPoints;
    }
};

using Runs = std::vector<Run>;

// A paragraph, or one row of a table when cells isn't empty.
struct Block {
    Runs runs;
    std::vector<Runs> cells;
    bool isRow() const { return !cells.empty(); }
};

struct Document {
    std::vector<Block> blocks;
};

Document parse(std::string_view rtf);

// HTML for a rich text viewer; consecutive rows form one table.
std::string toHtml(const Document& doc);

// The text alone: a line per paragraph or row, cells parted by " | ". For
// tests and for a quick look at a document.
std::string toPlainText(const Document& doc);

}  // namespace zelvan::rtf
