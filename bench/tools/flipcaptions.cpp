// Plays a recorded SCC file through the capture path (rawQueue, drainQueue,
// the line-21 filter) on virtual time and prints each caption the display
// output is handed: a pop-on caption as it flips into view (style 1 with
// rows) and a roll-up line as it ends (style 3). One line each:
// "<timecode>\t<row>|<row>...", rows top to bottom, trimmed.
//
//   flipcaptions [--broadcast] FILE.scc
//
// --broadcast turns on the decoder setting that leaves the write position
// alone at an EDM.

#include <cstdio>
#include <cstring>
#include <string>

#include "core/sccreader.h"
#include "line21/l21filter.h"
#include "support/fakes.h"

namespace {

using namespace zelvan;

class FlipPrinter : public DisplayOutput {
  public:
    explicit FlipPrinter(Tavo& tavo) : m_tavo(tavo) {}
    void showForm() override {}
    void hideForm() override {}
    void showStartupBarker(bool) override {}
    void DWErase() override {}
    void doInput(std::int16_t style, const std::string&) override {
        if (style == kStyleNothing) return;
        std::string rows;
        for (std::int16_t i = 1; i <= 15; ++i) {
            const std::string row = m_tavo.getExternalTextTrimmed(i);
            if (row.empty()) continue;
            rows += (rows.empty() ? "" : "|") + row;
        }
        if (!rows.empty()) std::printf("%s\t%s\n", timecode.c_str(), rows.c_str());
    }
    std::string timecode;

  private:
    Tavo& m_tavo;
};

}  // namespace

int main(int argc, char** argv) {
    const bool broadcast = argc == 3 && std::strcmp(argv[1], "--broadcast") == 0;
    if (argc != 2 && !broadcast) {
        std::fprintf(stderr, "usage: %s [--broadcast] FILE.scc\n", argv[0]);
        return 2;
    }
    const SccRecording recording = readSccFile(argv[argc - 1]);
    if (!recording.header) {
        std::fprintf(stderr, "%s: not an SCC recording\n", argv[argc - 1]);
        return 1;
    }
    testing::Rig rig;
    InL21 memory;
    memory.EdmKeepsPosition = broadcast;
    L21Filter filter(memory);
    FlipPrinter printer(rig.tavo);
    rig.tavo.frmL21Serial = &filter;
    rig.tavo.bInL21Serial = true;
    rig.tavo.frmOutDW = &printer;
    rig.tavo.bOutDW = true;
    // Each timecode's bytes are drained before the next, as between two
    // receive events; never more than the ring's free room at once.
    for (const SccLine& line : recording.lines) {
        printer.timecode = line.timecode;
        const std::string bytes = line.bytes();
        for (std::size_t at = 0; at < bytes.size(); at += kRawQueueSize / 2) {
            rig.queue(bytes.substr(at, kRawQueueSize / 2));
            while (!rig.tavo.queueEmpty()) rig.tavo.drainQueue();
        }
    }
    return 0;
}
