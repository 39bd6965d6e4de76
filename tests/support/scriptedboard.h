#pragma once
// A board library whose answers a test scripts: the kind at each address and
// each register's value (unset: 0). Every call is logged in order: "r1 FE@CC00",
// "w1 2F=0@CC00", "cmd 5A,0@CC00", "check CC00".

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "line21/l21boardinput.h"
#include "platform/boardlibrary.h"

namespace zelvan::testing {

class ScriptedBoard : public BoardLibrary {
  public:
    std::uint8_t AEC_PCTC_CHECK_BOARD(BoardAddress& a) override {
        log.push_back("check " + hex(a));
        return kinds[a];
    }
    void AEC_PCTC_GET_DLL_INFO(std::string& info) override {
        log.push_back("info");
        info = "2.1";
    }
    void AEC_PCTC_READ_1BYTE(std::uint8_t& d, BoardRegister& r, BoardAddress& a) override {
        d = static_cast<std::uint8_t>(read("r1 ", r, a));
    }
    void AEC_PCTC_READ_4BYTES(std::uint32_t& d, BoardRegister& r, BoardAddress& a) override {
        d = read("r4 ", r, a);
    }
    void AEC_PCTC_WRITE_1BYTE(std::uint8_t& d, BoardRegister& r, BoardAddress& a) override {
        log.push_back("w1 " + hex(r) + "=" + hex(d) + "@" + hex(a));
    }
    void AEC_PCTC_WRITE_4BYTES(std::uint32_t& d, BoardRegister& r, BoardAddress& a) override {
        log.push_back("w4 " + hex(r) + "=" + hex(d) + "@" + hex(a));
    }
    void AEC_PCTC_SEND_COMMAND(std::uint8_t& c, std::uint8_t& second, BoardAddress& a) override {
        log.push_back("cmd " + hex(c) + "," + hex(second) + "@" + hex(a));
    }

    static std::string hex(std::uint32_t v) {
        char text[12];
        std::snprintf(text, sizeof text, "%X", v);
        return text;
    }

    std::map<BoardAddress, std::uint8_t> kinds;
    std::map<std::pair<BoardAddress, BoardRegister>, std::uint32_t> regs;
    std::vector<std::string> log;

  private:
    std::uint32_t read(const char* what, BoardRegister r, BoardAddress a) {
        log.push_back(what + hex(r) + "@" + hex(a));
        return regs[{a, r}];
    }
};

// A board window that shows nothing but its board list and two memory panes.
struct PanesBoardView : L21BoardView {
    std::string dm, nm;
    std::vector<std::string> boards;
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
    void addBoardEntry(const std::string& text) override { boards.push_back(text); }
    void showBoardSelection(int) override {}
    void setDMText(const std::string& text) override { dm = text; }
    void setNMText(const std::string& text) override { nm = text; }
    void showChannel(std::int16_t) override {}
};

}  // namespace zelvan::testing
