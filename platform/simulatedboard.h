#pragma once
// A PCI timecode board (kind 4) that plays a recording of line-21 caption
// data, for machines without the vendor's library and board. It answers at
// one base address and presents the recording's words in its caption
// registers at the pace of their timecodes: one word a frame at 29.97 frames
// a second, timed from the first timecode. Each word keeps its parity bits as
// broadcast, with bit 31 set and the marker 0x40. Words the program hasn't
// taken yet wait in the board's own queue, however late the next poll comes.
//
// The recording starts when the program sets the board up for caption output
// (the setup commands) and runs on the board's clock from then on; a later
// setup doesn't restart it. Its clock is injected, so tests run it on virtual
// time.
//
// Settings, section "Board":
//   Recording  path of a Scenarist SCC file; with none, or one that can't be
//              read, no board answers at any address
//   Address    base address in C hexadecimal, one of the addresses the program
//              probes; default 0xCC00
//   Model      high four bits of register 0x08, 0 to 15; default 1 (an LTC reader)
//   Loop       True: the recording starts over after its last word; default False

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/sccreader.h"
#include "platform/boardlibrary.h"
#include "platform/settingsstore.h"

namespace zelvan {

inline constexpr const char* kBoardSection = "Board";

namespace board {
// What the simulated board answers with.
inline constexpr std::uint8_t kStartOutput = 0x2F;  // the last setup command
inline constexpr std::uint32_t kWordValid = 0x80000000u;
inline constexpr std::uint32_t kWordMarker = 0x40000000u;  // 0x40 in bits 30-24
}  // namespace board

struct SimulatedBoardSettings {
    std::string recording;
    BoardAddress address = 0xCC00;
    std::uint8_t model = 1;
    bool loop = false;
};

// Reads the section "Board"; a value that can't be used takes its default.
SimulatedBoardSettings readBoardSettings(const SettingsStore& store);

class SimulatedBoard : public BoardLibrary {
  public:
    using Clock = std::function<long long()>;  // milliseconds

    // Reads the recording named in the settings.
    SimulatedBoard(const SimulatedBoardSettings& settings, Clock clock);
    // Plays a recording already read.
    SimulatedBoard(const SimulatedBoardSettings& settings, const SccRecording& recording,
                   Clock clock);

    std::uint8_t AEC_PCTC_CHECK_BOARD(BoardAddress& address) override;
    void AEC_PCTC_GET_DLL_INFO(std::string& info) override;
    void AEC_PCTC_READ_1BYTE(std::uint8_t& data, BoardRegister& reg,
                             BoardAddress& address) override;
    void AEC_PCTC_READ_4BYTES(std::uint32_t& data, BoardRegister& reg,
                              BoardAddress& address) override;
    void AEC_PCTC_WRITE_1BYTE(std::uint8_t& data, BoardRegister& reg,
                              BoardAddress& address) override;
    void AEC_PCTC_WRITE_4BYTES(std::uint32_t& data, BoardRegister& reg,
                               BoardAddress& address) override;
    void AEC_PCTC_SEND_COMMAND(std::uint8_t& command, std::uint8_t& second,
                               BoardAddress& address) override;

    // Words that have arrived and wait to be taken.
    std::size_t waiting() const { return m_queue.size(); }
    bool playing() const { return m_start >= 0; }

    // An SCC word (first byte high) as the board presents it.
    static std::uint32_t captionWord(std::uint16_t sccWord);

  private:
    bool answers(BoardAddress address) const;
    // Moves every word whose time has come into the queue.
    void catchUp();
    std::uint32_t wordRegister(BoardRegister reg);

    SimulatedBoardSettings m_settings;
    Clock m_clock;
    std::vector<SccTimedWord> m_schedule;
    long m_period = 0;  // frames of one pass of the recording
    long long m_start = -1;
    std::size_t m_next = 0;  // next word of the schedule to arrive
    long m_pass = 0;
    std::deque<std::uint32_t> m_queue;
    std::size_t m_read = 0;  // word registers read since the last take
    std::map<BoardRegister, std::uint8_t> m_written;
};

}  // namespace zelvan
