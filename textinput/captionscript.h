#pragma once
// The caption script reader: a prepared script of captions, read whole when
// the operator opens it, becomes an ordered list of caption texts. Timing of
// any kind is dropped; only the text and the order stay.
//
// Three shapes are read, told apart by content and never by file name:
// - TDS and plain text: captions are runs of text lines between blank lines;
//   lines starting with ";" are comments, with "_" or "^" markers. Every byte
//   is kept as it stands (Windows-1252).
// - SubRip: a cue number, a timing line with "-->" and the cue's lines.
// - WebVTT: a "WEBVTT" header, then cues of an optional identifier, a timing
//   line and the cue's lines; NOTE, STYLE and REGION blocks are skipped.
// In the last two, markup tags are dropped, entities decoded and UTF-8 text
// brought into the code page ("?" for a character it hasn't).
//
// A caption is its lines joined by CR LF, with none behind the last.

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

// Blanks (code 32) off both ends, and only blanks: a tab stays.
std::string trimBlanks(std::string_view line);
// The class of a line already trimmed.
LineClass classify(std::string_view trimmed);
Format detectFormat(std::string_view file);
// The lines of a file; CR LF, LF and a lone CR each end a line, and a last
// line without an end still counts.
std::vector<std::string> splitLines(std::string_view file);

// Reads a whole script and appends its captions, in file order, to the list.
void appendCaptions(std::string_view file, std::vector<std::string>& captionList);

}  // namespace zelvan::script
