// Plays a recorded SCC file through the real program, from a decoder box on
// one pseudo-terminal to the sign on another, and prints each caption as the
// sign shows it: a pop-on caption when it comes up bright, a roll-up line when
// it is written below the roll. Rows are read through the reflector, trimmed,
// joined by "|"; blank screens are not printed.
//
//   signcaptions PROGRAM FILE.scc [SETTINGS-LINES]
//
// SETTINGS-LINES go into the program's settings file, e.g.
// $'[L21Decoder]\nEdmKeepsPosition=True\n'.

#include <cstdio>
#include <string>

#include "core/sccreader.h"
#include "display/signmodel.h"
#include "support/programrig.h"

namespace {

using namespace zelvan;

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// Feeds the sign byte by byte and prints the rows at each turn to bright.
class SignWatcher {
  public:
    void feed(const std::string& bytes, bool show) {
        for (char b : bytes) {
            const bool wasBright = m_sign.bright;
            const int rollups = m_sign.rollups, frames = m_sign.frames;
            m_sign.feed(std::string(1, b));
            if (m_sign.rollups > rollups) {
                m_lineFollows = true;
            } else if (m_lineFollows && m_sign.frames > frames) {
                m_lineFollows = false;  // the new bottom line of a roll-up
                if (show) print(kSignRows);
            }
            if (show && !wasBright && m_sign.bright) print(1);
        }
    }

  private:
    void print(int fromRow) {
        std::string rows;
        for (int r = fromRow; r <= kSignRows; ++r) {
            const std::string row = trimmed(m_sign.rowThroughReflector(r));
            if (!row.empty()) rows += (rows.empty() ? "" : "|") + row;
        }
        if (!rows.empty()) std::printf("%s\n", rows.c_str());
    }
    SignModel m_sign;
    bool m_lineFollows = false;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s PROGRAM FILE.scc [SETTINGS-LINES]\n", argv[0]);
        return 2;
    }
    const SccRecording recording = readSccFile(argv[2]);
    if (!recording.header) {
        std::fprintf(stderr, "%s: not an SCC recording\n", argv[2]);
        return 1;
    }
    testing::ProgramRig rig(argv[1], argc > 3 ? argv[3] : "");
    if (!rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 20000)) {
        std::fprintf(stderr, "the program never opened the decoder port\n");
        return 1;
    }
    rig.waitUntil([] { return false; }, 500);  // the startup caption and the open's purge
    const std::size_t startup = rig.signBytes.size();
    // A line at a time, each once the sign has been quiet for 50 ms: sent all
    // at once, a recording outruns the sign's frames and the program's ring.
    for (const SccLine& line : recording.lines) {
        rig.sendToBox(line.bytes());
        while (!rig.readSign(50).empty()) {
        }
    }
    // Done once the sign has been quiet for a second.
    for (std::size_t before = 0; before != rig.signBytes.size();) {
        before = rig.signBytes.size();
        rig.waitUntil([] { return false; }, 1000);
    }
    SignWatcher watcher;
    watcher.feed(rig.signBytes.substr(0, startup), false);  // the startup caption
    watcher.feed(rig.signBytes.substr(startup), true);
    return 0;
}
