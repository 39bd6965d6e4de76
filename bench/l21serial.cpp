// One capture turn of the line-21 serial filter per caption line of a
// recorded broadcast: the receive event queues the line, the drain decodes
// every byte, and each byte of the active channel renders both banks for the
// memory panes. A decoder box at 1200 baud sends at most 120 bytes a second;
// the turn has to keep far ahead of that with room for the display output.

#include <benchmark/benchmark.h>

#include "core/sccreader.h"
#include "line21/l21serialinput.h"
#include "support/quietprogram.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

void BM_CaptureTurnPerCaptionLine(benchmark::State& state) {
    const auto lines = readSccFile(ZELVAN_SAMPLES_DIR "/news-2018-12-17-popon.scc").lines;
    if (lines.empty()) {
        state.SkipWithError("missing " ZELVAN_SAMPLES_DIR "/news-2018-12-17-popon.scc");
        return;
    }
    testing::QuietProgram program;
    auto& [dispatch, store, tone, tavo, port] = program;
    InL21 memory;
    testing::RecordingL21SerialView view;
    L21SerialInput input(tavo, memory, port, view);
    // As showForm leaves it, without entering the loop: the benchmark turns it.
    input.link().openPort();
    memory.view = &input;
    tavo.frmL21Serial = &input;
    tavo.bInL21Serial = true;

    std::size_t next = 0;
    std::int64_t bytes = 0;
    for (auto _ : state) {
        const std::string line = lines[next].bytes();
        next = (next + 1) % lines.size();
        port.deliver(line);
        tavo.pollInput();
        while (!tavo.queueEmpty()) tavo.pollInput();  // past null padding
        bytes += static_cast<std::int64_t>(line.size());
    }
    state.SetBytesProcessed(bytes);
}
BENCHMARK(BM_CaptureTurnPerCaptionLine);

}  // namespace
}  // namespace zelvan

BENCHMARK_MAIN();
