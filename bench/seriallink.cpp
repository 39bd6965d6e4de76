// The receive path of a serial link: a burst read off the port and queued on
// the capture ring, the work a receive event does inside the capture loop's
// yield. At 115200 baud a port delivers about 11.5 bytes per millisecond.

#include <benchmark/benchmark.h>

#include "platform/seriallink.h"
#include "support/quietprogram.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

void BM_ReceiveBurst(benchmark::State& state) {
    testing::QuietProgram program;
    auto& [dispatch, store, tone, tavo, port] = program;
    testing::RecordingLinkView view;
    SerialLink link(kL21Link, port, tavo.linkContext(), view);
    link.openPort();
    const std::string burst(static_cast<std::size_t>(state.range(0)), '\x41');
    for (auto _ : state) {
        port.deliver(burst);
        dispatch.yield();  // the receive event reads and queues the burst
        tavo.rawQueueOut = tavo.rawQueueIn;
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReceiveBurst)->Arg(1)->Arg(64)->Arg(1000);

}  // namespace
}  // namespace zelvan

BENCHMARK_MAIN();
