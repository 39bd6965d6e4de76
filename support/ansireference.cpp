#include "support/ansireference.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "core/readable.h"
#include "display/protocol.h"
#include "line21/l21tables.h"

namespace zelvan {

namespace {

// Text of the code page into rich text: the three specials escaped, the
// upper half and the control bytes as \'hh.
std::string esc(std::string_view s) {
    std::string out;
    for (char c : s) {
        const auto b = static_cast<std::uint8_t>(c);
        if (c == '\\' || c == '{' || c == '}') {
            out += '\\';
            out += c;
        } else if (b < 0x20 || b >= 0x80) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\'%02x", b);
            out += hex;
        } else {
            out += c;
        }
    }
    return out;
}

std::string hex(unsigned b) {
    char buf[4];
    std::snprintf(buf, sizeof buf, "%02X", b & 0xFF);
    return buf;
}

std::string hexBytes(std::string_view s) {
    std::string out;
    for (char c : s) out += (out.empty() ? "" : " ") + hex(static_cast<std::uint8_t>(c));
    return out;
}

std::string heading(std::string_view text) {
    return "\\pard\\sb240\\b\\fs28 " + esc(text) + "\\b0\\fs20\\par\n";
}
std::string para(std::string_view text) {
    return "\\pard " + esc(text) + "\\par\n";
}

// One table row; cells are already rich text.
std::string row(std::initializer_list<std::string> cells, bool bold = false) {
    std::string out = "\\trowd\\trgaph60";
    for (std::size_t i = 1; i <= cells.size(); ++i) out += "\\cellx" + std::to_string(i * 2000);
    out += "\n";
    for (const std::string& c : cells)
        out += "\\pard\\intbl" + std::string(bold ? "\\b " : " ") + c + (bold ? "\\b0" : "") +
               "\\cell ";
    return out + "\\row\n";
}

const char* frameName(ControlFrame f) {
    switch (f) {
        case ControlFrame::Bright:
            return "Bright";
        case ControlFrame::Dim:
            return "Dim";
        case ControlFrame::Reset:
            return "Reset";
        case ControlFrame::Rollup:
            return "Roll up";
        case ControlFrame::BoardReset:
            return "Board reset";
        case ControlFrame::BoardFront:
            return "Front board";
        case ControlFrame::BoardFrontReversed:
            return "Front board, reversed text";
        case ControlFrame::BoardRear:
            return "Rear board";
        case ControlFrame::BoardRearReversed:
            return "Rear board, reversed text";
    }
    return "";
}

const char* commandMeaning(line21::Command c) {
    using line21::Command;
    switch (c) {
        case Command::RCL:
            return "Resume caption loading (pop-on)";
        case Command::BS:
            return "Backspace";
        case Command::RU2:
            return "Roll-up, 2 rows";
        case Command::RU3:
            return "Roll-up, 3 rows";
        case Command::RU4:
            return "Roll-up, 4 rows";
        case Command::RDC:
            return "Resume direct captioning (paint-on)";
        case Command::EDM:
            return "Erase displayed memory";
        case Command::CR:
            return "Carriage return";
        case Command::ENM:
            return "Erase non-displayed memory";
        case Command::EOC:
            return "End of caption (flip memories)";
    }
    return "";
}

std::string signFrames() {
    const std::string e(1, kReadableEscape);
    std::string out = heading("Sign control frames");
    out += para("Every frame opens with " + e + "01" + e + "20 and closes with " + e +
                "01. In the readable notation " + e +
                " and two hexadecimal digits stand for one byte.");
    out += row({"Frame", "Readable notation", "Bytes"}, true);
    for (const ControlFrameEntry& f : kControlFrames)
        out += row({esc(frameName(f.frame)), esc(f.literal), hexBytes(f.wire)});
    out += row({"Write text", esc(e + "01" + e + "20 r c text " + e + "01"),
                "row byte r = 1F + row, column byte c = 1F + column"});
    out += row({"Clear row", esc(e + "01" + e + "20 n " + e + "20" + e + "0f" + e + "01"),
                "n = 20 + row - 1"});
    out += row({"Music note", "in caption text " + esc("\x95"), "sent as 7F"});
    return out;
}

std::string line21Commands() {
    std::string out = heading("Line-21 commands");
    out += para("Each command is a pair of bytes: the first byte names the channel.");
    out += row({"Command", "CC1", "CC2", "Meaning"}, true);
    for (const line21::CommandCode& c : line21::commandCodes)
        out += row(
            {c.name, "14 " + hex(c.second), "1C " + hex(c.second), esc(commandMeaning(c.command))});
    out += heading("Line-21 row codes");
    out += para("Second bytes 40-5F name the upper row, 60-7E the lower one.");
    out += row({"First byte", "Upper row", "Lower row"}, true);
    for (const line21::RowCode& r : line21::rowCodes)
        out += row({hex(r.first), std::to_string(r.upperRow),
                    r.lowerRow ? std::to_string(r.lowerRow) : "-"});
    return out;
}

std::string charTable(std::string_view title, unsigned first, const auto& table) {
    std::string out = heading(title);
    out += row({"Pair", "Character", "Pair", "Character"}, true);
    for (std::size_t i = 0; i + 1 < table.size(); i += 2) {
        auto cell = [&](const line21::CodeChar& c) { return esc(std::string(1, char(c.ch))); };
        out += row({hex(first) + " " + hex(table[i].code), cell(table[i]),
                    hex(first) + " " + hex(table[i + 1].code), cell(table[i + 1])});
    }
    return out;
}

std::string textSubstitutions() {
    std::string out = heading("Line-21 text bytes that differ from ASCII");
    out += row({"Byte", "Received as", "Shown as"}, true);
    for (const line21::CodeChar& c : line21::textSubstitutions)
        out +=
            row({hex(c.code), esc(std::string(1, char(c.code))), esc(std::string(1, char(c.ch)))});
    return out;
}

std::string codePage() {
    std::string out = heading("Windows-1252 characters");
    out += para(
        "Row and column give the byte: row 4x, column 1 is 41 (A). Empty cells have no character.");
    std::string head = "\\trowd\\trgaph40";
    for (int i = 1; i <= 17; ++i) head += "\\cellx" + std::to_string(i * 560);
    auto line = [&](std::string first, auto cellOf) {
        std::string r = head + "\n\\pard\\intbl\\b " + first + "\\b0\\cell ";
        for (unsigned col = 0; col < 16; ++col) r += "\\pard\\intbl " + cellOf(col) + "\\cell ";
        return r + "\\row\n";
    };
    out += line("", [](unsigned col) { return "\\b x" + hex(col).substr(1) + "\\b0 "; });
    for (unsigned rowHigh = 2; rowHigh < 16; ++rowHigh) {
        out += line(hex(rowHigh * 16).substr(0, 1) + "x", [&](unsigned col) {
            const auto b = static_cast<std::uint8_t>(rowHigh * 16 + col);
            const bool undefined =
                b == 0x7F || b == 0x81 || b == 0x8D || b == 0x8F || b == 0x90 || b == 0x9D;
            return undefined ? std::string() : esc(std::string(1, char(b)));
        });
    }
    return out;
}

}  // namespace

std::string ansiReferenceRtf() {
    std::string doc = "{\\rtf1\\ansi\\ansicpg1252\\deff0\n{\\fonttbl{\\f0\\fswiss Arial;}}\n";
    doc += "\\pard\\b\\fs36 Control Code Reference\\b0\\fs20\\par\n";
    doc += signFrames();
    doc += line21Commands();
    doc += charTable("Line-21 special characters", 0x11, line21::specialChars);
    doc += charTable("Line-21 extended characters, first set", 0x12, line21::extendedChars1);
    doc += charTable("Line-21 extended characters, second set", 0x13, line21::extendedChars2);
    doc += textSubstitutions();
    doc += codePage();
    return doc + "}\n";
}

}  // namespace zelvan
