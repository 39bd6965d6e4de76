#include "platform/alsatone.h"

#include <alsa/asoundlib.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <thread>
#include <vector>

namespace zelvan {

namespace {

constexpr unsigned kRate = 22050;

std::vector<short> sineWave(int hz, int ms) {
    std::vector<short> samples(static_cast<std::size_t>(kRate) * ms / 1000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<short>(
            9000 * std::sin(2 * std::numbers::pi * hz * static_cast<double>(i) / kRate));
    return samples;
}

bool playOnDevice(const std::vector<short>& samples) {
    snd_pcm_t* pcm = nullptr;
    if (snd_pcm_open(&pcm, "default", SND_PCM_STREAM_PLAYBACK, 0) < 0) return false;
    bool ok = snd_pcm_set_params(pcm, SND_PCM_FORMAT_S16_LE, SND_PCM_ACCESS_RW_INTERLEAVED, 1,
                                 kRate, 1, 50000) == 0;
    if (ok) {
        const snd_pcm_sframes_t n = snd_pcm_writei(pcm, samples.data(), samples.size());
        if (n < 0) snd_pcm_recover(pcm, static_cast<int>(n), 1);
        ok = n >= 0;
        if (ok) snd_pcm_drain(pcm);
    }
    snd_pcm_close(pcm);
    return ok;
}

// ALSA prints its own complaints to stderr when no card exists; the tone call
// reports nothing.
void quietAlsa(const char*, int, const char*, int, const char*, ...) {}

}  // namespace

void AlsaTone::play(int hz, int ms) {
    if (ms <= 0) return;
    const auto start = std::chrono::steady_clock::now();
    snd_lib_error_set_handler(quietAlsa);
    playOnDevice(sineWave(hz, ms));
    std::this_thread::sleep_until(start + std::chrono::milliseconds(ms));
}

}  // namespace zelvan
