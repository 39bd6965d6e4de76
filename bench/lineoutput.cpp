// The line output engine runs for every input byte: it reads the 15 rows,
// rebuilds the pending text and, at the end of a caption, builds and sends
// its frames. These measure that per call, with a three-row caption on the
// filter and the frames going to a port that drops them.

#include <benchmark/benchmark.h>

#include <array>

#include "core/inputfilter.h"
#include "core/tavo.h"
#include "display/lineoutput.h"
#include "platform/settingsstore.h"
#include "support/memorysettingsstore.h"
#include "support/rowsfilter.h"
#include "support/virtualdispatch.h"

namespace zelvan {
namespace {

struct Bench {
    Bench() {
        filter.rows[13] = "    THE QUICK BROWN FOX JUMPS";
        filter.rows[14] = "    OVER THE LAZY DOG, WHILE";
        filter.rows[15] = "    THE \x95 MUSIC PLAYS ON.";
        tavo.bInTDS = true;
        tavo.frmInTDS = &filter;
        out.bFilterOn = true;
    }
    VirtualDispatch dispatch;
    MemorySettingsStore store;
    SilentTone tone;
    Tavo tavo{dispatch, store, tone};
    testing::RowsFilter filter;
    NullDisplayLink link;
    LineOutput out{tavo, link};
};

// The common case: a byte that finishes nothing.
void BM_DoInputNothingFinished(benchmark::State& state) {
    Bench b;
    for (auto _ : state) b.out.doInput(kStyleNothing, std::string());
    benchmark::DoNotOptimize(b.out.tbPending);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DoInputNothingFinished);

// A whole pop-on caption: 96 bytes of text and control, then the flip that
// repaints three rows. Items are input bytes.
void BM_DoInputPopOnCaption(benchmark::State& state) {
    Bench b;
    constexpr int kBytesPerCaption = 96;
    for (auto _ : state) {
        for (int i = 0; i < kBytesPerCaption - 1; ++i) b.out.doInput(kStyleNothing, std::string());
        b.out.doInput(kStyleRows, std::string());
    }
    benchmark::DoNotOptimize(b.link.written);
    state.SetItemsProcessed(state.iterations() * kBytesPerCaption);
}
BENCHMARK(BM_DoInputPopOnCaption);

// The byte that flips a caption into view: dim, erase, three rows, bright.
void BM_DoInputRepaint(benchmark::State& state) {
    Bench b;
    for (auto _ : state) b.out.doInput(kStyleRows, std::string());
    benchmark::DoNotOptimize(b.link.written);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DoInputRepaint);

// The byte that ends a roll-up line: bright, then a roll-up and a row for each row.
void BM_DoInputRollUp(benchmark::State& state) {
    Bench b;
    for (auto _ : state) b.out.doInput(kStyleLineEnded, std::string());
    benchmark::DoNotOptimize(b.link.written);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DoInputRollUp);

}  // namespace
}  // namespace zelvan

BENCHMARK_MAIN();
