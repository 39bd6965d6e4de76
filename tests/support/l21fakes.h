#pragma once
// Test doubles around the caption memory: a line-21 window that records its
// pane refreshes and owns a flush timer on virtual time, and a short way to
// push a byte string through FilterL21.

#include <memory>
#include <string>
#include <vector>

#include "line21/inl21.h"
#include "support/virtualdispatch.h"

namespace zelvan::testing {

// Records each refresh as "DM" or "NM" with the pane text it would show. Its
// flush timer does nothing: the decoder window's tests run the real one.
class FakeL21View : public L21View {
  public:
    FakeL21View(InL21& memory, VirtualDispatch& dispatch)
        : memory(memory), timer(dispatch.makeTimer([] {})) {}

    void cmdShowDM_Click() override {
        refreshes.push_back("DM");
        rtbDM = memory.memoryText(memory.iDM);
    }
    void cmdShowNM_Click() override {
        refreshes.push_back("NM");
        rtbNM = memory.memoryText(memory.iNM);
    }
    Timer& TimerFlushTimer() override { return *timer; }

    InL21& memory;
    std::unique_ptr<Timer> timer;
    std::vector<std::string> refreshes;
    std::string rtbDM, rtbNM;
};

// A line-21 byte pair, as a decoder box delivers it.
inline std::string l21Pair(int first, int second) {
    return {static_cast<char>(first), static_cast<char>(second)};
}

// A pop-on caption on row 15: load, place, text, and the flip; each control
// pair doubled as broadcast.
inline std::string popOnCaption(const std::string& text) {
    std::string s;
    for (int code : {0x20, 0x2E, 0x70}) s += l21Pair(0x14, code) + l21Pair(0x14, code);
    s += text;
    if (text.size() % 2) s += '\0';  // text goes in pairs; a null pads the last
    return s + l21Pair(0x14, 0x2F) + l21Pair(0x14, 0x2F);
}

// The style of each byte of `bytes`, in order.
inline std::vector<std::int16_t> feedL21(InL21& memory, const std::string& bytes) {
    std::vector<std::int16_t> styles;
    std::string out;
    for (char c : bytes) styles.push_back(memory.FilterL21(std::string(1, c), out));
    return styles;
}

}  // namespace zelvan::testing
