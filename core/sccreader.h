#pragma once
// Reads recorded line-21 caption data in the Scenarist SCC format: a header
// line "Scenarist_SCC V1.0", then lines of a timecode, a tab and words of four
// hex digits, one byte pair each as broadcast, with odd parity in bit 7 of
// each byte. Shared by everything that replays recordings: the simulated
// timecode board, the demo's decoder box, tests and benchmarks.

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

namespace zelvan {

// Line 21 runs at 30000/1001 frames a second; one word goes out a frame.
inline constexpr double kSccFramesPerSecond = 30000.0 / 1001.0;

struct SccLine {
    int lineNumber = 0;  // in the file, counted from 1
    std::string timecode;
    long frame = 0;  // frames since 00:00:00:00, drop-frame labels counted as such
    std::vector<std::uint16_t> words;  // as recorded, parity bits kept

    // The pairs with bit 7 of each byte stripped, as a decoder box delivers
    // them; the padding word 8080 gives two null bytes.
    std::string bytes() const;
};

struct SccRecording {
    bool header = false;  // the file starts with the Scenarist header
    std::vector<SccLine> lines;
    std::vector<std::string> errors;  // one per skipped line: "line N: why"

    // The whole stream, bit 7 stripped.
    std::string stream() const;
};

// One word as a decoder box at 7O1 delivers it: two bytes, bit 7 stripped.
std::string sccWordBytes(std::uint16_t word);

// A word with the frame it goes out on, counted from the first timecode.
struct SccTimedWord {
    long frame = 0;
    std::uint16_t word = 0;
};

// The frame number of "HH:MM:SS:FF" (or ';' / '.' before FF for drop-frame),
// or -1 when the text isn't a timecode.
long sccTimecodeFrame(const std::string& timecode);

SccRecording parseScc(std::istream& in);
// A file that can't be opened gives no header, no lines and one error.
SccRecording readSccFile(const std::string& path);

// One word a frame from each line's timecode on; a line that starts before
// the previous one has gone out follows it without a gap, so no word is lost.
std::vector<SccTimedWord> sccSchedule(const SccRecording& recording);

}  // namespace zelvan
