#pragma once
// The timecode board's library: the seven operations the board window calls,
// named as the vendor's library names them. Data, registers and addresses pass
// by reference, and register operations take the board's base address last.
// Only AEC_PCTC_CHECK_BOARD's result is looked at; every other call leaves its
// answer in the data argument, and a caller goes on with whatever stands there.
//
// The program ships one implementation, a simulated board that plays a
// recording (platform/simulatedboard.h); a build over the real library puts
// the vendor's calls behind this same interface.

#include <array>
#include <cstdint>
#include <string>

namespace zelvan {

// Base addresses and registers are 16-bit patterns; 0xCC00 is an address like
// any other, whatever its sign as a 16-bit integer.
using BoardAddress = std::uint16_t;
using BoardRegister = std::uint16_t;

// The base addresses a board can be set to, in the order the program probes them.
inline constexpr std::array<BoardAddress, 18> kBoardAddresses{
    0x1000, 0x1100, 0xCC00, 0xCD00, 0xCE00, 0xCF00, 0xDC00, 0xDD00, 0xDE00,
    0xDF00, 0x200,  0x220,  0x280,  0x2A0,  0x300,  0x320,  0x380,  0x3A0};

namespace board {
// The registers the program touches, passed with the base address.
inline constexpr BoardRegister kRegStatus = 0xFE;     // bit 0: new data waiting
inline constexpr BoardRegister kRegFormat = 0x0F;     // 0x1E: caption words below
inline constexpr BoardRegister kRegTake = 0x2F;       // write 0: closes a poll
inline constexpr BoardRegister kRegModel = 0x08;      // bit 2: setup to do; 7-4: model
inline constexpr BoardRegister kRegSetup = 0x2E;      // read, cleared, restored with 0x40
inline constexpr BoardRegister kRegSetupWord = 0x20;  // takes 0x80808080
inline constexpr BoardRegister kRegRevision = 0x06;   // and 0x07: revision of a kind 4 board
inline constexpr BoardRegister kRegPcModel = 0x3E0;   // to 0x3E4: three model, two revision
inline constexpr BoardRegister kRegPcFamily = 0x3EF;  // family code of a kind 3 board
inline constexpr BoardRegister kWordRegs[] = {0x50, 0x54, 0x58, 0x5C};
inline constexpr std::uint8_t kFormatCaptions = 0x1E;  // in kRegFormat
inline constexpr std::uint8_t kDataWaiting = 0x01;     // bit 0 of kRegStatus
inline constexpr std::uint8_t kSetupPending = 0x04;    // bit 2 of kRegModel
// The one kind that delivers captions: the PCI family.
inline constexpr std::uint8_t kPciKind = 4;
}  // namespace board

class BoardLibrary {
  public:
    virtual ~BoardLibrary() = default;
    // 0: no board answers at the address; else its kind, 1 to 4.
    virtual std::uint8_t AEC_PCTC_CHECK_BOARD(BoardAddress& address) = 0;
    // Fills a text of three characters; the program doesn't use it.
    virtual void AEC_PCTC_GET_DLL_INFO(std::string& info) = 0;
    virtual void AEC_PCTC_READ_1BYTE(std::uint8_t& data, BoardRegister& reg,
                                     BoardAddress& address) = 0;
    virtual void AEC_PCTC_READ_4BYTES(std::uint32_t& data, BoardRegister& reg,
                                      BoardAddress& address) = 0;
    virtual void AEC_PCTC_WRITE_1BYTE(std::uint8_t& data, BoardRegister& reg,
                                      BoardAddress& address) = 0;
    virtual void AEC_PCTC_WRITE_4BYTES(std::uint32_t& data, BoardRegister& reg,
                                       BoardAddress& address) = 0;
    // The board carries out `command`; `second` is passed along as it stands.
    virtual void AEC_PCTC_SEND_COMMAND(std::uint8_t& command, std::uint8_t& second,
                                       BoardAddress& address) = 0;
};

}  // namespace zelvan
