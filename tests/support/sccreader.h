#pragma once
// Reads recorded line-21 caption data in the Scenarist SCC format: a header
// line, then lines of a timecode, a tab and words of four hex digits, one byte
// pair each, with odd parity in bit 7. The reader strips bit 7, which gives the
// seven-bit bytes a decoder box delivers; the padding word 8080 becomes two
// null bytes, as the box would pass it on. Header-only, so that tests,
// benchmarks and tools can share it.

#include <cctype>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zelvan::testing {

struct SccLine {
    std::string timecode;  // "HH:MM:SS:FF" or "HH:MM:SS;FF"
    std::string bytes;     // the pairs in order, seven bits a byte
};

// The frame count of a timecode at a nominal 30 frames a second, or -1.
inline long sccFrame(const std::string& timecode) {
    int h = 0, m = 0, s = 0, f = 0;
    char sep = 0;
    std::istringstream in(timecode);
    char c1 = 0, c2 = 0;
    if (!(in >> h >> c1 >> m >> c2 >> s >> sep >> f)) return -1;
    return ((h * 60L + m) * 60L + s) * 30L + f;
}

// The bytes of a line's words ("9420 9420 c845"), bit 7 stripped. A word that
// isn't four hex digits is skipped.
inline std::string sccWordsToBytes(const std::string& words) {
    std::string bytes;
    std::istringstream in(words);
    std::string word;
    while (in >> word) {
        if (word.size() != 4) continue;
        bool hex = true;
        for (char c : word) hex = hex && std::isxdigit(static_cast<unsigned char>(c));
        if (!hex) continue;
        const unsigned long value = std::stoul(word, nullptr, 16);
        bytes += static_cast<char>((value >> 8) & 0x7F);
        bytes += static_cast<char>(value & 0x7F);
    }
    return bytes;
}

// All caption lines of a file in order; empty if the file can't be read or
// isn't SCC.
inline std::vector<SccLine> readScc(const std::string& path) {
    std::vector<SccLine> lines;
    std::ifstream file(path);
    std::string text;
    if (!std::getline(file, text) || text.rfind("Scenarist_SCC", 0) != 0) return lines;
    while (std::getline(file, text)) {
        if (!text.empty() && text.back() == '\r') text.pop_back();
        const std::size_t tab = text.find_first_of("\t ");
        if (tab == std::string::npos || sccFrame(text.substr(0, tab)) < 0) continue;
        lines.push_back({text.substr(0, tab), sccWordsToBytes(text.substr(tab + 1))});
    }
    return lines;
}

// The whole stream of a file as one byte string.
inline std::string readSccStream(const std::string& path) {
    std::string stream;
    for (const SccLine& line : readScc(path)) stream += line.bytes;
    return stream;
}

}  // namespace zelvan::testing
