#include "support/rtfreader.h"

#include <array>
#include <cstdint>
#include <optional>

#include "platform/codepage.h"

namespace zelvan::rtf {

namespace {

// Groups nest deeper than this only in hostile files; beyond it the reader
// still counts braces but keeps the state of the deepest group it holds.
constexpr std::size_t kMaxDepth = 512;
constexpr std::size_t kMaxWordLength = 32;

// Destinations whose text is not part of the document.
constexpr std::array<std::string_view, 20> kSkipped{
    "fonttbl",   "colortbl",  "stylesheet", "info",
    "pict",      "header",    "footer",     "headerl",
    "headerr",   "footerl",   "footerr",    "object",
    "listtable", "themedata", "generator",  "listoverridetable",
    "rsidtbl",   "xmlnstbl",  "datastore",  "latentstyles"};

// Control words that stand for one character.
struct NamedChar {
    std::string_view word;
    char32_t ch;
};
constexpr std::array<NamedChar, 9> kNamedChars{{{"emdash", 0x2014},
                                                {"endash", 0x2013},
                                                {"lquote", 0x2018},
                                                {"rquote", 0x2019},
                                                {"ldblquote", 0x201C},
                                                {"rdblquote", 0x201D},
                                                {"bullet", 0x2022},
                                                {"emspace", 0x2003},
                                                {"enspace", 0x2002}}};

struct State {
    bool bold = false, italic = false, underline = false;
    int halfPoints = 24;
    bool skip = false;
    int unicodeSkip = 1;  // characters after \uN that stand in for it
};

class Reader {
  public:
    explicit Reader(std::string_view in) : m_in(in) {}

    Document run() {
        while (m_pos < m_in.size()) step();
        // An unclosed file: whatever text is left still counts.
        m_state = State{};
        if (m_inTable || !m_cells.empty()) {
            endRow();
        } else if (!m_runs.empty()) {
            endParagraph();
        }
        return std::move(m_doc);
    }

  private:
    void step() {
        const char c = m_in[m_pos++];
        switch (c) {
            case '{':
                openGroup();
                break;
            case '}':
                closeGroup();
                break;
            case '\\':
                controlWord();
                break;
            case '\r':
            case '\n':
                break;
            default:
                m_groupStart = false;  // text ahead of a destination word makes it none
                character(static_cast<std::uint8_t>(c));
        }
    }

    void openGroup() {
        if (m_stack.size() < kMaxDepth) {
            m_stack.push_back(m_state);
        } else {
            ++m_overflow;
        }
        m_groupStart = true;
    }

    void closeGroup() {
        m_groupStart = false;
        if (m_overflow > 0) {
            --m_overflow;
        } else if (!m_stack.empty()) {
            m_state = m_stack.back();
            m_stack.pop_back();
        }
    }

    void controlWord() {
        const bool first = m_groupStart;
        m_groupStart = false;
        if (m_pos >= m_in.size()) return;
        const char c = m_in[m_pos];
        if (!isLetter(c)) return controlSymbol(c, first);
        const std::size_t start = m_pos;
        while (m_pos < m_in.size() && isLetter(m_in[m_pos]) && m_pos - start < kMaxWordLength)
            ++m_pos;
        const std::string_view word = m_in.substr(start, m_pos - start);
        const std::optional<long> arg = number();
        if (m_pos < m_in.size() && m_in[m_pos] == ' ') ++m_pos;
        if (first && isSkipped(word)) m_state.skip = true;
        command(word, arg);
    }

    void controlSymbol(char c, bool first) {
        ++m_pos;
        switch (c) {
            case '\'':
                return hexChar();
            case '*':
                if (first || m_state.skip) m_state.skip = true;
                return;
            case '~':
                return emit(0xA0);
            case '_':
                return emit(0x2011);
            case '\r':
            case '\n':
                return endParagraph();
            case '\\':
            case '{':
            case '}':
                return emit(static_cast<unsigned char>(c));
            default:
                return;  // \- and unknown symbols carry nothing visible
        }
    }

    std::optional<long> number() {
        const std::size_t start = m_pos;
        bool negative = false;
        if (m_pos < m_in.size() && m_in[m_pos] == '-') {
            negative = true;
            ++m_pos;
        }
        long value = 0;
        int digits = 0;
        while (m_pos < m_in.size() && m_in[m_pos] >= '0' && m_in[m_pos] <= '9') {
            if (digits < 10) value = value * 10 + (m_in[m_pos] - '0');
            ++digits;
            ++m_pos;
        }
        if (digits == 0) {
            m_pos = start;
            return std::nullopt;
        }
        return negative ? -value : value;
    }

    void hexChar() {
        int value = 0;
        for (int i = 0; i < 2 && m_pos < m_in.size(); ++i) {
            const int d = hexDigit(m_in[m_pos]);
            if (d < 0) break;
            value = value * 16 + d;
            ++m_pos;
        }
        if (m_pendingSkip > 0) {
            --m_pendingSkip;
            return;
        }
        emit(codepage::toUnicode(static_cast<std::uint8_t>(value)));
    }

    void character(std::uint8_t b) {
        if (m_pendingSkip > 0) {
            --m_pendingSkip;
            return;
        }
        emit(codepage::toUnicode(b));
    }

    void command(std::string_view w, std::optional<long> arg) {
        const bool on = !arg || *arg != 0;
        if (w == "par" || w == "sect") return endParagraph();
        if (w == "line") return emit('\n');
        if (w == "tab") return emit('\t');
        if (w == "b") return set(m_state.bold, on);
        if (w == "i") return set(m_state.italic, on);
        if (w == "ul") return set(m_state.underline, on);
        if (w == "ulnone") return set(m_state.underline, false);
        if (w == "fs") return setSize(arg);
        if (w == "plain") return plain();
        if (w == "pard") return void(m_inTable = false);
        if (w == "intbl") return void(m_inTable = true);
        if (w == "cell") return endCell();
        if (w == "row") return endRow();
        if (w == "uc") return void(m_state.unicodeSkip = arg ? static_cast<int>(*arg & 0xF) : 1);
        if (w == "u") return unicodeChar(arg);
        if (w == "bin") return skipBinary(arg);
        for (const NamedChar& n : kNamedChars)
            if (w == n.word) return emit(n.ch);
    }

    void set(bool& flag, bool on) { flag = on; }
    void setSize(std::optional<long> arg) {
        if (arg && *arg >= 2 && *arg <= 400) m_state.halfPoints = static_cast<int>(*arg);
    }
    void plain() {
        m_state.bold = m_state.italic = m_state.underline = false;
        m_state.halfPoints = 24;
    }

    void unicodeChar(std::optional<long> arg) {
        if (!arg) return;
        long v = *arg;
        if (v < 0) v += 65536;
        if (v < 0 || v > 0xFFFF || (v >= 0xD800 && v <= 0xDFFF)) v = 0xFFFD;
        emit(static_cast<char32_t>(v));
        m_pendingSkip = m_state.unicodeSkip;
    }

    // Raw bytes follow; a count beyond the end just ends the file.
    void skipBinary(std::optional<long> arg) {
        if (!arg || *arg <= 0) return;
        const std::size_t n = static_cast<std::size_t>(*arg);
        m_pos = n > m_in.size() - m_pos ? m_in.size() : m_pos + n;
    }

    void emit(char32_t c) {
        m_pendingSkip = 0;
        if (m_state.skip) return;
        if (m_runs.empty() || !m_runs.back().sameLook(look())) m_runs.push_back(look());
        codepage::appendUtf8(m_runs.back().text, c);  // never beyond 16 bits
    }

    Run look() const {
        Run r;
        r.bold = m_state.bold;
        r.italic = m_state.italic;
        r.underline = m_state.underline;
        r.halfPoints = m_state.halfPoints;
        return r;
    }

    void endParagraph() {
        if (m_state.skip) return;
        if (m_inTable) {
            // A paragraph break inside a cell keeps the cell's text together.
            if (!m_runs.empty()) emit('\n');
            return;
        }
        if (!m_cells.empty()) endRow();
        m_doc.blocks.push_back(Block{std::move(m_runs), {}});
        m_runs.clear();
    }

    void endCell() {
        if (m_state.skip) return;
        m_cells.push_back(std::move(m_runs));
        m_runs.clear();
    }

    void endRow() {
        if (m_state.skip) return;
        if (!m_runs.empty()) endCell();
        if (m_cells.empty()) return;
        m_doc.blocks.push_back(Block{{}, std::move(m_cells)});
        m_cells.clear();
    }

    static bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static int hexDigit(char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    }
    static bool isSkipped(std::string_view word) {
        for (std::string_view s : kSkipped)
            if (word == s) return true;
        return false;
    }

    std::string_view m_in;
    std::size_t m_pos = 0;
    State m_state;
    std::vector<State> m_stack;
    std::size_t m_overflow = 0;
    bool m_groupStart = false;
    bool m_inTable = false;
    int m_pendingSkip = 0;
    Runs m_runs;
    std::vector<Runs> m_cells;
    Document m_doc;
};

void escapeHtml(std::string& out, const std::string& text) {
    for (char c : text) {
        switch (c) {
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '&':
                out += "&amp;";
                break;
            case '\t':
                out += "&nbsp;&nbsp;&nbsp;&nbsp;";
                break;
            case '\n':
                out += "<br>";
                break;
            default:
                out += c;
        }
    }
}

void runsHtml(std::string& out, const Runs& runs) {
    for (const Run& r : runs) {
        out += "<span style=\"font-size:" + std::to_string(r.halfPoints / 2) + "pt\">";
        if (r.bold) out += "<b>";
        if (r.italic) out += "<i>";
        if (r.underline) out += "<u>";
        escapeHtml(out, r.text);
        if (r.underline) out += "</u>";
        if (r.italic) out += "</i>";
        if (r.bold) out += "</b>";
        out += "</span>";
    }
}

std::string runsText(const Runs& runs) {
    std::string s;
    for (const Run& r : runs) s += r.text;
    return s;
}

}  // namespace

Document parse(std::string_view rtf) {
    return Reader(rtf).run();
}

std::string toHtml(const Document& doc) {
    std::string out = "<html><body>";
    bool inTable = false;
    for (const Block& b : doc.blocks) {
        if (b.isRow() != inTable) {
            out +=
                inTable ? "</table>" : "<table border=\"1\" cellspacing=\"0\" cellpadding=\"3\">";
            inTable = b.isRow();
        }
        if (b.isRow()) {
            out += "<tr>";
            for (const Runs& cell : b.cells) {
                out += "<td>";
                runsHtml(out, cell);
                out += "</td>";
            }
            out += "</tr>";
        } else {
            out += "<p>";
            runsHtml(out, b.runs);
            out += "</p>";
        }
    }
    if (inTable) out += "</table>";
    return out + "</body></html>";
}

std::string toPlainText(const Document& doc) {
    std::string out;
    for (const Block& b : doc.blocks) {
        if (b.isRow()) {
            for (std::size_t i = 0; i < b.cells.size(); ++i)
                out += (i ? " | " : "") + runsText(b.cells[i]);
        } else {
            out += runsText(b.runs);
        }
        out += '\n';
    }
    return out;
}

}  // namespace zelvan::rtf
