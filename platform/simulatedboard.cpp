#include "platform/simulatedboard.h"

#include <algorithm>
#include <cstdlib>

namespace zelvan {

namespace {

// Revision "A1", as a board of the first series reports it.
constexpr std::uint8_t kRevisionChars[] = {'A', '1'};

bool parseNumber(const std::string& text, int base, long& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    value = std::strtol(text.c_str(), &end, base);
    return end && *end == '\0';
}

// A C hexadecimal address that the program probes, or the default.
BoardAddress readAddress(const std::string& text, BoardAddress fallback) {
    long value = 0;
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    if (!hex || !parseNumber(text.substr(2), 16, value)) return fallback;
    const auto* it = std::find(kBoardAddresses.begin(), kBoardAddresses.end(), value);
    return it == kBoardAddresses.end() ? fallback : *it;
}

}  // namespace

SimulatedBoardSettings readBoardSettings(const SettingsStore& store) {
    SimulatedBoardSettings s;
    s.recording = store.get(kBoardSection, "Recording", "");
    s.address = readAddress(store.get(kBoardSection, "Address", ""), s.address);
    long model = 0;
    if (parseNumber(store.get(kBoardSection, "Model", ""), 10, model) && model >= 0 && model <= 15)
        s.model = static_cast<std::uint8_t>(model);
    const std::string loop = store.get(kBoardSection, "Loop", "False");
    s.loop = loop == "True" || loop == "true" || loop == "TRUE";
    return s;
}

SimulatedBoard::SimulatedBoard(const SimulatedBoardSettings& settings, Clock clock)
    : SimulatedBoard(settings,
                     settings.recording.empty() ? SccRecording{} : readSccFile(settings.recording),
                     std::move(clock)) {}

SimulatedBoard::SimulatedBoard(const SimulatedBoardSettings& settings,
                               const SccRecording& recording, Clock clock)
    : m_settings(settings), m_clock(std::move(clock)), m_schedule(sccSchedule(recording)) {
    // A loop starts over one frame after the last word.
    if (!m_schedule.empty()) m_period = m_schedule.back().frame + 1;
}

// Without a recording the board isn't there at all.
bool SimulatedBoard::answers(BoardAddress address) const {
    return !m_schedule.empty() && address == m_settings.address;
}

std::uint32_t SimulatedBoard::captionWord(std::uint16_t sccWord) {
    const std::uint32_t first = sccWord >> 8;
    const std::uint32_t second = sccWord & 0xFFu;
    return board::kWordValid | board::kWordMarker | (second << 8) | first;
}

// Word n of the schedule goes out at frame n of its pass; a frame lasts
// 1001/30 ms.
void SimulatedBoard::catchUp() {
    if (!playing() || m_schedule.empty()) return;
    const long long elapsed = m_clock() - m_start;
    while (m_next < m_schedule.size()) {
        const long long frame = m_schedule[m_next].frame + m_pass * m_period;
        if (elapsed * 30 < frame * 1001) return;
        m_queue.push_back(captionWord(m_schedule[m_next].word));
        if (++m_next == m_schedule.size() && m_settings.loop) {
            m_next = 0;
            ++m_pass;
        }
    }
}

std::uint8_t SimulatedBoard::AEC_PCTC_CHECK_BOARD(BoardAddress& address) {
    return answers(address) ? board::kPciKind : 0;
}

void SimulatedBoard::AEC_PCTC_GET_DLL_INFO(std::string& info) {
    info = "SIM";
}

void SimulatedBoard::AEC_PCTC_READ_1BYTE(std::uint8_t& data, BoardRegister& reg,
                                         BoardAddress& address) {
    if (!answers(address)) return;  // a missing board leaves the data alone
    catchUp();
    switch (reg) {
        case board::kRegStatus:
            data = m_queue.empty() ? 0 : board::kDataWaiting;
            return;
        case board::kRegFormat:
            data = board::kFormatCaptions;
            return;
        case board::kRegModel:
            data = static_cast<std::uint8_t>(m_settings.model << 4 | board::kSetupPending);
            return;
        case board::kRegRevision:
            data = kRevisionChars[0];
            return;
        case board::kRegRevision + 1:
            data = kRevisionChars[1];
            return;
        default:
            break;
    }
    const auto it = m_written.find(reg);
    data = it == m_written.end() ? 0 : it->second;
}

// The four word registers show the first four words of the queue; a register
// with no word behind it reads 0, which has bit 31 clear.
std::uint32_t SimulatedBoard::wordRegister(BoardRegister reg) {
    const auto slot = static_cast<std::size_t>(
        std::find(std::begin(board::kWordRegs), std::end(board::kWordRegs), reg) -
        std::begin(board::kWordRegs));
    if (slot >= m_queue.size()) return 0;
    m_read = std::max(m_read, slot + 1);
    return m_queue[slot];
}

void SimulatedBoard::AEC_PCTC_READ_4BYTES(std::uint32_t& data, BoardRegister& reg,
                                          BoardAddress& address) {
    if (!answers(address)) return;
    catchUp();
    const auto* slot = std::find(std::begin(board::kWordRegs), std::end(board::kWordRegs), reg);
    const bool word = slot != std::end(board::kWordRegs);
    data = word ? wordRegister(reg) : 0;
}

// A write of 0 to the take register hands over the words read since the last
// one; words that arrived meanwhile stay behind them.
void SimulatedBoard::AEC_PCTC_WRITE_1BYTE(std::uint8_t& data, BoardRegister& reg,
                                          BoardAddress& address) {
    if (!answers(address)) return;
    if (reg == board::kRegTake && data == 0) {
        m_queue.erase(m_queue.begin(),
                      m_queue.begin() + static_cast<long>(std::min(m_read, m_queue.size())));
        m_read = 0;
        return;
    }
    m_written[reg] = data;
}

// The setup's writes are accepted and change nothing the program reads.
void SimulatedBoard::AEC_PCTC_WRITE_4BYTES(std::uint32_t&, BoardRegister&, BoardAddress&) {}

void SimulatedBoard::AEC_PCTC_SEND_COMMAND(std::uint8_t& command, std::uint8_t&,
                                           BoardAddress& address) {
    if (answers(address) && command == board::kStartOutput && !playing()) m_start = m_clock();
}

}  // namespace zelvan
