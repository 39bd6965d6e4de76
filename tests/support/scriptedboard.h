#pragma once
// A board library whose answers a test scripts: the kind at each address and
// the value of each register. Every call is logged in order, so a test can
// see which registers were touched, how, and at which address.

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/boardlibrary.h"

namespace zelvan::testing {

class ScriptedBoard : public BoardLibrary {
  public:
    std::uint8_t AEC_PCTC_CHECK_BOARD(BoardAddress& address) override {
        log.push_back("check " + hex(address));
        const auto it = kinds.find(address);
        return it == kinds.end() ? 0 : it->second;
    }
    void AEC_PCTC_GET_DLL_INFO(std::string& info) override {
        log.push_back("info");
        info = "2.1";
    }
    void AEC_PCTC_READ_1BYTE(std::uint8_t& data, BoardRegister& reg,
                             BoardAddress& address) override {
        log.push_back("r1 " + hex(reg) + "@" + hex(address));
        data = static_cast<std::uint8_t>(value(reg, address));
    }
    void AEC_PCTC_READ_4BYTES(std::uint32_t& data, BoardRegister& reg,
                              BoardAddress& address) override {
        log.push_back("r4 " + hex(reg) + "@" + hex(address));
        data = value(reg, address);
    }
    void AEC_PCTC_WRITE_1BYTE(std::uint8_t& data, BoardRegister& reg,
                              BoardAddress& address) override {
        log.push_back("w1 " + hex(reg) + "=" + hex(data) + "@" + hex(address));
    }
    void AEC_PCTC_WRITE_4BYTES(std::uint32_t& data, BoardRegister& reg,
                               BoardAddress& address) override {
        log.push_back("w4 " + hex(reg) + "=" + hex(data) + "@" + hex(address));
    }
    void AEC_PCTC_SEND_COMMAND(std::uint8_t& command, std::uint8_t& second,
                               BoardAddress& address) override {
        log.push_back("cmd " + hex(command) + "," + hex(second) + "@" + hex(address));
    }

    // A board of `kind` at `address`, and a register's value there.
    void put(BoardAddress address, std::uint8_t kind) { kinds[address] = kind; }
    void set(BoardAddress address, BoardRegister reg, std::uint32_t v) { regs[{address, reg}] = v; }
    // The calls logged since the last take.
    std::vector<std::string> take() { return std::exchange(log, {}); }

    static std::string hex(std::uint32_t v) {
        char text[12];
        std::snprintf(text, sizeof text, "%X", v);
        return text;
    }

    std::map<BoardAddress, std::uint8_t> kinds;
    std::map<std::pair<BoardAddress, BoardRegister>, std::uint32_t> regs;
    std::vector<std::string> log;

  private:
    std::uint32_t value(BoardRegister reg, BoardAddress address) const {
        const auto it = regs.find({address, reg});
        return it == regs.end() ? 0 : it->second;
    }
};

}  // namespace zelvan::testing
