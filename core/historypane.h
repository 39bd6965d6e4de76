#pragma once
// A history pane of the main window: text inserted at the end with a colour
// per insert. TextPane keeps it in memory; the window mirrors it in a widget.

#include <cstdint>
#include <string>
#include <vector>

namespace zelvan {

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};
inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kRed{255, 0, 0};

class HistoryPane {
  public:
    virtual ~HistoryPane() = default;
    virtual void setInsertColor(Rgb c) = 0;
    // Inserts at the caret in the current insert colour; the caret follows.
    virtual void insertText(const std::string& bytes) = 0;
    virtual void moveCaretToEnd() = 0;
    virtual long length() const = 0;
    virtual void clear() = 0;
};

// The pane in memory. The caret is always at the end, and text takes the
// colour last set, which is also the colour of the character before the caret.
class TextPane : public HistoryPane {
  public:
    void setInsertColor(Rgb c) override { m_color = c; }
    void insertText(const std::string& bytes) override {
        m_text += bytes;
        m_colors.insert(m_colors.end(), bytes.size(), m_color);
    }
    void moveCaretToEnd() override {}
    long length() const override { return static_cast<long>(m_text.size()); }
    void clear() override {
        m_text.clear();
        m_colors.clear();
    }

    const std::string& text() const { return m_text; }
    Rgb colorAt(std::size_t i) const { return m_colors.at(i); }
    // The text with each red run wrapped in {braces}, for tests and debugging.
    std::string dump() const {
        std::string out;
        bool red = false;
        for (std::size_t i = 0; i < m_text.size(); ++i) {
            const bool isRed = m_colors[i] == kRed;
            if (isRed != red) out += isRed ? '{' : '}';
            red = isRed;
            out += m_text[i];
        }
        if (red) out += '}';
        return out;
    }

  private:
    std::string m_text;
    std::vector<Rgb> m_colors;
    Rgb m_color = kBlack;
};

}  // namespace zelvan
