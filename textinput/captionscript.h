#pragma once
// The caption script reader: a prepared script of captions, read whole when
// the operator opens it, becomes an ordered list of captions. A TDS script
// keeps only its text and order; a subtitle file also keeps each cue's start
// and end time.
//
// Three shapes are read, told apart by content and never by file name:
// - TDS and plain text: captions are runs of text lines between blank lines;
//   lines starting with ";" are comments, with "_" or "^" markers. Every byte
//   is kept as it stands (Windows-1252).
// - SubRip: a cue number, a timing line "00:00:01,000 --> 00:00:02,500" and
//   the cue's lines.
// - WebVTT: a "WEBVTT" header, then cues of an optional identifier, a timing
//   line and the cue's lines; NOTE, STYLE and REGION blocks are skipped.
// Only a file that is surely one of the last two leaves the TDS road, and one
// that gives no cue is read as TDS after all. In cues, markup tags are
// dropped, entities decoded and UTF-8 text brought into the code page ("?"
// for a character it hasn't, the music note for U+266A).
//
// A caption is its lines joined by CR LF, with none behind the last.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zelvan::script {

enum class LineClass {
    Separator,  // empty once trimmed: closes the caption being collected
    Comment,    // ";" first
    Marker,     // "_" or "^" first
    Text,       // anything else: one line of the current caption
};

enum class Format { Tds, SubRip, WebVtt };

// One caption: its lines joined by CR LF, and the cue's times in
// milliseconds of the file's clock (both 0 in a TDS script).
struct Caption {
    std::string text;
    std::int64_t startMs = 0;
    std::int64_t endMs = 0;
};

struct Script {
    Format format = Format::Tds;
    std::vector<Caption> captions;
    bool timed() const { return format != Format::Tds; }
};

// Blanks (code 32) off both ends, and only blanks: a tab stays.
std::string trimBlanks(std::string_view line);
// The class of a line already trimmed.
LineClass classify(std::string_view trimmed);
Format detectFormat(std::string_view file);
// The lines of a file; CR LF, LF and a lone CR each end a line, and a last
// line without an end still counts.
std::vector<std::string> splitLines(std::string_view file);

// Reads a whole script: its format and its captions in file order.
Script readScript(std::string_view file);
// Reads a whole script and appends the text of its captions to the list.
void appendCaptions(std::string_view file, std::vector<std::string>& captionList);

}  // namespace zelvan::script
