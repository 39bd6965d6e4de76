// Arbitrary bytes through the line-21 decoder, with the caption memory's
// invariants checked after every byte. The first input byte picks the channel
// and whether a window is attached, so the refresh and timer paths run too.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "line21/inl21.h"

namespace {

class NullTimer : public zelvan::Timer {
  public:
    void setInterval(int ms) override { m_interval = ms; }
    int interval() const override { return m_interval; }
    void setEnabled(bool on) override { m_enabled = on; }
    bool enabled() const override { return m_enabled; }

  private:
    int m_interval = 0;
    bool m_enabled = false;
};

// A window whose panes must always get the 508-character text of a bank.
class CheckingView : public zelvan::L21View {
  public:
    explicit CheckingView(zelvan::InL21& m) : m_memory(m) {}
    void cmdShowDM_Click() override { check(m_memory.memoryText(m_memory.iDM)); }
    void cmdShowNM_Click() override { check(m_memory.memoryText(m_memory.iNM)); }
    zelvan::Timer& TimerFlushTimer() override { return m_timer; }

  private:
    static void check(const std::string& text) {
        if (text.size() != 508) std::abort();
    }
    zelvan::InL21& m_memory;
    NullTimer m_timer;
};

void fail(const char* what, const zelvan::InL21& m) {
    std::fprintf(stderr, "invariant broken: %s\n%s", what, m.dump().c_str());
    std::abort();
}

void checkInvariants(const zelvan::InL21& m, std::int16_t style) {
    if (!((m.iDM == 1 && m.iNM == 2) || (m.iDM == 2 && m.iNM == 1))) fail("bank roles", m);
    if (m.iRow < 1 || m.iRow > 15) fail("iRow", m);
    if (m.iCol < 1 || m.iCol > 32) fail("iCol", m);
    if (m.iWriteBank != 1 && m.iWriteBank != 2) fail("iWriteBank", m);
    if (style != 0 && style != 1 && style != 3) fail("style", m);
    if (m.bHaveFirst && m.bIgnoreText) fail("assembly state", m);
    if (m.rowString(m.iWriteBank, m.iRow).size() != 32) fail("row length", m);
}

void checkAllRows(const zelvan::InL21& m) {
    for (std::int16_t bank = 1; bank <= 2; ++bank) {
        if (m.memoryText(bank).size() != 508) fail("memory text", m);
        for (std::int16_t row = 1; row <= 15; ++row)
            if (m.rowString(bank, row).size() != 32) fail("row length", m);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    zelvan::InL21 memory;
    CheckingView view(memory);
    memory.iChannel = static_cast<std::int16_t>(data[0] % 9);
    if (data[0] & 0x80) memory.view = &view;
    memory.EdmKeepsPosition = data[0] & 0x40;
    std::string in(1, ' ');
    std::string out;
    for (std::size_t i = 1; i < size; ++i) {
        in[0] = static_cast<char>(data[i]);
        const std::int16_t style = memory.FilterL21(in, out);
        checkInvariants(memory, style);
        if (out.size() > 32) fail("outString longer than a row", memory);
    }
    checkAllRows(memory);
    return 0;
}
