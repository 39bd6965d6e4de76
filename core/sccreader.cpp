#include "core/sccreader.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace zelvan {

namespace {

bool parseWord(const std::string& text, std::uint16_t& word) {
    if (text.size() != 4) return false;
    for (char c : text)
        if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
    word = static_cast<std::uint16_t>(std::strtoul(text.c_str(), nullptr, 16));
    return true;
}

std::string lineError(int lineNumber, const std::string& why) {
    return "line " + std::to_string(lineNumber) + ": " + why;
}

// Fills line from "TIMECODE<tab>WORDS"; returns why it can't, or "".
std::string parseLine(const std::string& text, SccLine& line) {
    const std::size_t gap = text.find_first_of("\t ");
    line.timecode = text.substr(0, gap);
    line.frame = sccTimecodeFrame(line.timecode);
    if (line.frame < 0) return "bad timecode \"" + line.timecode + "\"";
    std::istringstream words(gap == std::string::npos ? std::string() : text.substr(gap));
    std::string word;
    while (words >> word) {
        std::uint16_t value = 0;
        if (!parseWord(word, value)) return "bad word \"" + word + "\"";
        line.words.push_back(value);
    }
    return {};
}

}  // namespace

std::string sccWordBytes(std::uint16_t word) {
    return {static_cast<char>((word >> 8) & 0x7F), static_cast<char>(word & 0x7F)};
}

std::string SccLine::bytes() const {
    std::string out;
    for (std::uint16_t w : words) out += sccWordBytes(w);
    return out;
}

std::string SccRecording::stream() const {
    std::string out;
    for (const SccLine& line : lines) out += line.bytes();
    return out;
}

// Drop-frame labels skip frames 0 and 1 of each minute except every tenth, so
// the label keeps up with 29.97 frames a second.
long sccTimecodeFrame(const std::string& timecode) {
    int h = 0, m = 0, s = 0, f = 0;
    char c1 = 0, c2 = 0, c3 = 0, extra = 0;
    if (std::sscanf(timecode.c_str(), "%2d%c%2d%c%2d%c%2d%c", &h, &c1, &m, &c2, &s, &c3, &f,
                    &extra) != 7)
        return -1;
    if (c1 != ':' || c2 != ':' || (c3 != ':' && c3 != ';' && c3 != '.')) return -1;
    if (h < 0 || m < 0 || m > 59 || s < 0 || s > 59 || f < 0 || f > 29) return -1;
    long frame = ((h * 60L + m) * 60L + s) * 30L + f;
    if (c3 != ':') {
        const long minutes = h * 60L + m;
        frame -= 2 * (minutes - minutes / 10);
    }
    return frame;
}

SccRecording parseScc(std::istream& in) {
    SccRecording rec;
    std::string text;
    int lineNumber = 0;
    while (std::getline(in, text)) {
        ++lineNumber;
        if (!text.empty() && text.back() == '\r') text.pop_back();
        if (lineNumber == 1) {
            rec.header = text.rfind("Scenarist_SCC", 0) == 0;
            if (!rec.header) {
                rec.errors.push_back(lineError(1, "not a Scenarist SCC file"));
                return rec;
            }
            continue;
        }
        if (text.find_first_not_of(" \t") == std::string::npos) continue;
        SccLine line;
        line.lineNumber = lineNumber;
        const std::string why = parseLine(text, line);
        if (why.empty())
            rec.lines.push_back(std::move(line));
        else
            rec.errors.push_back(lineError(lineNumber, why));
    }
    if (lineNumber == 0) rec.errors.push_back(lineError(1, "empty file"));
    return rec;
}

SccRecording readSccFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        SccRecording rec;
        rec.errors.push_back("can't read " + path);
        return rec;
    }
    return parseScc(file);
}

std::vector<SccTimedWord> sccSchedule(const SccRecording& recording) {
    std::vector<SccTimedWord> out;
    if (recording.lines.empty()) return out;
    const long first = recording.lines.front().frame;
    long next = 0;
    for (const SccLine& line : recording.lines) {
        next = std::max(next, line.frame - first);
        for (std::uint16_t w : line.words) out.push_back({next++, w});
    }
    return out;
}

}  // namespace zelvan
