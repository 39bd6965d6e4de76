// The line-21 decoder over a recorded broadcast, with no window attached: the
// cost per byte of FilterL21 alone. Target: 20 million bytes a second or more.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "core/sccreader.h"
#include "line21/inl21.h"

namespace {

// The 7-bit stream as drainQueue hands it on: the padding nulls never reach a filter.
std::string recordedStream(const char* file) {
    std::string stream = zelvan::readSccFile(std::string(ZELVAN_SAMPLES_DIR) + "/" + file).stream();
    stream.erase(std::remove(stream.begin(), stream.end(), '\0'), stream.end());
    return stream;
}

void decode(benchmark::State& state, const char* file) {
    const std::string stream = recordedStream(file);
    if (stream.empty()) {
        state.SkipWithError("no sample stream");
        return;
    }
    zelvan::InL21 memory;
    std::string in(1, ' ');
    std::string out;
    std::int64_t styles = 0;
    for (auto _ : state) {
        for (char c : stream) {
            in[0] = c;
            styles += memory.FilterL21(in, out);
        }
        benchmark::DoNotOptimize(styles);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}

void BM_FilterL21_PopOnNews(benchmark::State& state) {
    decode(state, "news-2018-12-17-popon.scc");
}
void BM_FilterL21_RollUp(benchmark::State& state) {
    decode(state, "rollup-mixed-rows.scc");
}

}  // namespace

BENCHMARK(BM_FilterL21_PopOnNews);
BENCHMARK(BM_FilterL21_RollUp);
BENCHMARK_MAIN();
