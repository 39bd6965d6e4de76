#include "textinput/captionscript.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "platform/codepage.h"

namespace zelvan::script {

namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kBom = "\xEF\xBB\xBF";
constexpr std::string_view kTimingArrow = "-->";
constexpr char32_t kMusicNote = U'\u266A';

std::string_view withoutBom(std::string_view file) {
    if (file.substr(0, kBom.size()) == kBom) file.remove_prefix(kBom.size());
    return file;
}

// The text of a file with a UTF-16 byte-order mark, as UTF-8; nothing for
// any other file. A character beyond the basic plane, or half of one, is
// one that the code page hasn't anyway.
std::optional<std::string> fromUtf16(std::string_view file) {
    const bool little = file.substr(0, 2) == "\xFF\xFE";
    if (!little && file.substr(0, 2) != "\xFE\xFF") return std::nullopt;
    std::string utf8;
    for (std::size_t i = 2; i + 1 < file.size(); i += 2) {
        const auto a = static_cast<unsigned char>(file[i]),
                   b = static_cast<unsigned char>(file[i + 1]);
        const char32_t unit = little ? (b << 8 | a) : (a << 8 | b);
        const bool surrogate = unit >= 0xD800 && unit <= 0xDFFF;
        if (surrogate && unit >= 0xDC00) continue;  // the low half adds nothing to the high one
        codepage::appendUtf8(utf8, surrogate ? char32_t(codepage::kReplacement) : unit);
    }
    return utf8;
}

bool isSpace(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimSpace(std::string_view s) {
    while (!s.empty() && isSpace(s.front())) s.remove_prefix(1);
    while (!s.empty() && isSpace(s.back())) s.remove_suffix(1);
    return s;
}

bool startsWithWord(std::string_view line, std::string_view word) {
    if (line.substr(0, word.size()) != word) return false;
    return line.size() == word.size() || isSpace(line[word.size()]);
}

bool isCueNumber(std::string_view line) {
    line = trimSpace(line);
    return !line.empty() &&
           std::all_of(line.begin(), line.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Reads the digits at the start of `s` into `value`; how many there were.
std::size_t readDigits(std::string_view s, std::int64_t& value) {
    std::size_t n = 0;
    for (value = 0; n < s.size() && n < 9 && s[n] >= '0' && s[n] <= '9'; ++n)
        value = value * 10 + (s[n] - '0');
    return n;
}

// "01:02:03,456", "1:02:03.456" or, without hours, "02:03.456": the time in
// milliseconds and its length, or a length of 0.
std::size_t readCueTime(std::string_view s, std::int64_t& ms) {
    std::int64_t parts[3] = {};
    std::size_t at = 0;
    int count = 0;
    for (; count < 3; ++count) {
        const std::size_t n = readDigits(s.substr(at), parts[count]);
        if (n == 0 || (count > 0 && n != 2)) return 0;
        at += n;
        if (!s.substr(at).starts_with(':')) break;
        ++at;
    }
    const std::string_view rest = s.substr(at);
    if (count == 0 || count == 3 || !(rest.starts_with(',') || rest.starts_with('.'))) return 0;
    std::int64_t millis = 0;
    if (readDigits(s.substr(at + 1), millis) != 3) return 0;
    const std::int64_t hours = count == 2 ? parts[0] : 0;
    const std::int64_t minutes = parts[count - 1], seconds = parts[count];
    if (minutes > 59 || seconds > 59) return 0;
    ms = ((hours * 60 + minutes) * 60 + seconds) * 1000 + millis;
    return at + 4;
}

// A cue timing line, "00:00:01,000 --> 00:00:02,500" with cue settings or
// SubRip positions behind it; false for any other line with an arrow.
bool readTimingLine(std::string_view line, Caption& cue) {
    line = trimSpace(line);
    std::size_t n = readCueTime(line, cue.startMs);
    if (n == 0) return false;
    line = trimSpace(line.substr(n));
    if (line.substr(0, kTimingArrow.size()) != kTimingArrow) return false;
    line = trimSpace(line.substr(kTimingArrow.size()));
    n = readCueTime(line, cue.endMs);
    return n > 0 && (n == line.size() || isSpace(line[n]));
}

bool isTimingLine(std::string_view line) {
    Caption ignored;
    return readTimingLine(line, ignored);
}

void appendCaption(std::vector<Caption>& captions, const std::vector<std::string>& lines,
                   Caption caption = {}) {
    if (lines.empty()) return;
    caption.text = lines.front();
    for (std::size_t i = 1; i < lines.size(); ++i) (caption.text += kCrLf) += lines[i];
    captions.push_back(std::move(caption));
}

// ---- TDS and plain text ----

void appendTdsCaptions(std::string_view file, std::vector<Caption>& captionList) {
    std::vector<std::string> caption;
    for (const std::string& raw : splitLines(file)) {
        const std::string line = trimBlanks(raw);
        switch (classify(line)) {
            case LineClass::Separator:
                appendCaption(captionList, caption);
                caption.clear();
                break;
            case LineClass::Comment:
            case LineClass::Marker:
                break;
            case LineClass::Text:
                caption.push_back(line);
                break;
        }
    }
    appendCaption(captionList, caption);  // the end of the file closes the last one
}

// ---- SubRip and WebVTT ----

bool isValidUtf8(std::string_view s) {
    for (std::size_t i = 0; i < s.size();) {
        const auto lead = static_cast<unsigned char>(s[i]);
        int extra = 0;
        if (lead >= 0xC2 && lead < 0xE0)
            extra = 1;
        else if (lead >= 0xE0 && lead < 0xF0)
            extra = 2;
        else if (lead >= 0xF0 && lead < 0xF5)
            extra = 3;
        else if (lead >= 0x80)
            return false;  // a byte that can't start a character
        if (s.size() - i <= static_cast<std::size_t>(extra)) return false;
        for (int k = 1; k <= extra; ++k)
            if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return false;
        i += static_cast<std::size_t>(extra) + 1;
    }
    return true;
}

struct NamedEntity {
    std::string_view name;
    char32_t unicode;
};

// A non-breaking space becomes a plain blank: the sign knows no other kind,
// and the blank keeps the words apart.
constexpr NamedEntity kEntities[] = {
    {"amp", U'&'}, {"lt", U'<'}, {"gt", U'>'}, {"nbsp", U' '}, {"quot", U'"'}, {"apos", U'\''},
};

// A numeric reference's character, or nothing for one that names no
// printable character of the code page (the music note counts: the sign
// shows it).
char32_t numericEntity(std::string_view digits) {
    const bool hex = !digits.empty() && (digits.front() == 'x' || digits.front() == 'X');
    if (hex) digits.remove_prefix(1);
    if (digits.empty()) return 0;  // the end is sought within 10 characters: 7 digits at most
    std::uint32_t value = 0;
    for (char c : digits) {
        int d = c >= '0' && c <= '9' ? c - '0' : -1;
        if (hex && c >= 'a' && c <= 'f') d = c - 'a' + 10;
        if (hex && c >= 'A' && c <= 'F') d = c - 'A' + 10;
        if (d < 0) return 0;
        value = value * (hex ? 16 : 10) + static_cast<std::uint32_t>(d);
    }
    const bool printable = value >= 0x20 && value != 0x7F && (value < 0x80 || value >= 0xA0);
    const bool known = codepage::fromUnicode(value) || value == kMusicNote;
    return printable && known ? value : 0;
}

// The character of the reference at the start of `s` ("&amp;"), and its
// length; 0 when `s` starts with no reference this reader knows.
std::size_t decodeEntity(std::string_view s, std::string& out) {
    // The longest reference known, "&#x10FFFF;", is 10 characters: the
    // search for its end stops there, so a line of "&" stays linear.
    const std::size_t end = s.substr(0, 10).find(';');
    if (end == std::string_view::npos) return 0;
    const std::string_view name = s.substr(1, end - 1);
    if (!name.empty() && name.front() == '#') {
        const char32_t c = numericEntity(name.substr(1));
        if (c == 0)
            out += static_cast<char>(codepage::kReplacement);
        else
            codepage::appendUtf8(out, c);
        return end + 1;
    }
    for (const NamedEntity& e : kEntities) {
        if (e.name != name) continue;
        codepage::appendUtf8(out, e.unicode);
        return end + 1;
    }
    return 0;
}

bool isLetter(std::string_view c) {
    return !c.empty() && ((c[0] >= 'a' && c[0] <= 'z') || (c[0] >= 'A' && c[0] <= 'Z'));
}

// How long the tag at the start of `s` is: "<i>", "</font>", "<v Roger>",
// "<00:01.000>" or a SubRip override "{\an8}"; 0 for a plain "<" or "{".
std::size_t tagLength(std::string_view s) {
    if (s.size() < 2) return 0;
    char close = 0;
    if (s[0] == '<') {
        const std::size_t name = s[1] == '/' ? 2 : 1;
        std::int64_t ms = 0;
        if (isLetter(s.substr(name, 1)) || (name == 1 && readCueTime(s.substr(1), ms) > 0))
            close = '>';
    } else if (s[0] == '{' && s[1] == '\\') {
        close = '}';
    }
    if (close == 0) return 0;
    const std::size_t end = s.find(close);
    return end == std::string_view::npos ? 0 : end + 1;
}

// The music note of subtitles, "♪", becomes the system's music note
// (the code page's bullet, code 149), which the sign shows as its note glyph.
std::string withMusicNotes(std::string_view utf8) {
    constexpr std::string_view kNote = "\xE2\x99\xAA";  // kMusicNote
    constexpr std::string_view kBullet = "\xE2\x80\xA2";
    std::string out(utf8);
    for (std::size_t at = 0; (at = out.find(kNote, at)) != std::string::npos; at += kBullet.size())
        out.replace(at, kNote.size(), kBullet);
    return out;
}

// A cue line as the sign should show it: tags out, entities in, blanks off,
// in the code page.
std::string cueText(std::string_view utf8) {
    std::string out;
    for (std::size_t i = 0; i < utf8.size();) {
        const std::string_view rest = utf8.substr(i);
        if (const std::size_t tag = tagLength(rest)) {
            i += tag;
            continue;
        }
        if (rest.front() == '&') {
            if (const std::size_t n = decodeEntity(rest, out)) {
                i += n;
                continue;
            }
        }
        out += rest.front();
        ++i;
    }
    return codepage::fromUtf8(withMusicNotes(trimSpace(out)));
}

bool isSkippedBlock(std::string_view first, Format format) {
    if (format != Format::WebVtt) return false;
    return startsWithWord(first, "NOTE") || startsWithWord(first, "STYLE") ||
           startsWithWord(first, "REGION") || startsWithWord(first, "WEBVTT");
}

// One block of lines between blank lines. Whatever stands before the timing
// line (a cue number or identifier) is dropped; a block without one (a
// header, a note, a stray line) gives no caption.
void appendCue(const std::vector<std::string_view>& block, Format format,
               std::vector<Caption>& captionList) {
    Caption cue;
    const auto timing = std::find_if(block.begin(), block.end(),
                                     [&](std::string_view l) { return readTimingLine(l, cue); });
    if (timing == block.end() || isSkippedBlock(block.front(), format)) return;
    std::vector<std::string> lines;
    for (auto it = timing + 1; it != block.end(); ++it)
        if (std::string text = cueText(*it); !text.empty()) lines.push_back(std::move(text));
    appendCaption(captionList, lines, cue);
}

// Valid UTF-8 is read as UTF-8, as both formats are written; a file that
// isn't is taken for an older script in the code page itself.
std::string asUtf8(std::string_view file) {
    file = withoutBom(file);
    return isValidUtf8(file) ? std::string(file) : codepage::toUtf8(std::string(file));
}

// A cue ends at an empty line; in WebVTT a line of blanks or tabs is still
// part of the cue, while SubRip files often end cues with one.
void appendCueCaptions(std::string_view file, Format format, std::vector<Caption>& captionList) {
    const std::string text = asUtf8(file);
    const std::vector<std::string> lines = splitLines(text);
    std::vector<std::string_view> block;
    for (const std::string& line : lines) {
        if (format == Format::WebVtt ? !line.empty() : !trimSpace(line).empty()) {
            block.push_back(line);
            continue;
        }
        appendCue(block, format, captionList);
        block.clear();
    }
    appendCue(block, format, captionList);
}

}  // namespace

std::string trimBlanks(std::string_view line) {
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return std::string(line.substr(first, line.find_last_not_of(' ') - first + 1));
}

LineClass classify(std::string_view trimmed) {
    if (trimmed.empty()) return LineClass::Separator;
    switch (trimmed.front()) {
        case ';':
            return LineClass::Comment;
        case '_':
        case '^':
            return LineClass::Marker;
        default:
            return LineClass::Text;
    }
}

std::vector<std::string> splitLines(std::string_view file) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < file.size(); ++i) {
        if (file[i] != '\r' && file[i] != '\n') continue;
        lines.emplace_back(file.substr(start, i - start));
        if (file[i] == '\r' && i + 1 < file.size() && file[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < file.size()) lines.emplace_back(file.substr(start));
    return lines;
}

// A WebVTT file says so in its first line and has a cue timing line; a
// SubRip file starts with a cue number and a timing line. Anything else is
// TDS, the format that takes every file.
Format detectFormat(std::string_view file) {
    file = withoutBom(file);
    const std::vector<std::string> lines = splitLines(file.substr(0, 4096));
    if (!lines.empty() && startsWithWord(lines.front(), "WEBVTT"))
        return std::any_of(lines.begin(), lines.end(), isTimingLine) ? Format::WebVtt : Format::Tds;
    const auto first = std::find_if(lines.begin(), lines.end(),
                                    [](const std::string& l) { return !trimSpace(l).empty(); });
    if (first == lines.end() || first + 1 == lines.end()) return Format::Tds;
    return isCueNumber(*first) && isTimingLine(*(first + 1)) ? Format::SubRip : Format::Tds;
}

// A file that looks like cues but gives none is read as the TDS script it
// then is, so that no caption text is lost. A UTF-16 file (what editors on
// Windows save as "Unicode") is decoded first; as TDS it comes into the code
// page like any other text.
Script readScript(std::string_view raw) {
    const std::optional<std::string> decoded = fromUtf16(raw);
    const std::string_view file = decoded ? std::string_view(*decoded) : raw;
    Script script{detectFormat(file), {}};
    if (script.format != Format::Tds) appendCueCaptions(file, script.format, script.captions);
    if (script.captions.empty()) {
        script.format = Format::Tds;
        appendTdsCaptions(decoded ? codepage::fromUtf8(*decoded) : file, script.captions);
    }
    return script;
}

void appendCaptions(std::string_view file, std::vector<std::string>& captionList) {
    for (Caption& c : readScript(file).captions) captionList.push_back(std::move(c.text));
}

}  // namespace zelvan::script
