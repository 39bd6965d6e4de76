#include "platform/mediareader.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libavutil/log.h>
}

#include <algorithm>
#include <chrono>

namespace zelvan {

namespace {

using Clock = std::chrono::steady_clock;

// How long a stream may give nothing before it counts as stalled, how long
// an open may take, and the pauses between reopenings.
constexpr long long kStallMs = 5000;
constexpr long long kOpenMs = 15000;
constexpr long long kFirstRetryMs = 1000;
constexpr long long kLongestRetryMs = 16000;
// A media time that goes back by more than this, or jumps ahead by more than
// kLongestGapMs, starts the real-time clock again: a wrapped or broken
// timestamp mustn't hold the captions.
constexpr long long kBackJumpMs = 1000;
constexpr long long kLongestGapMs = 60000;
// Pictures without caption data report the position at most this often.
constexpr long long kPositionEveryMs = 250;

long long nowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now().time_since_epoch())
        .count();
}

std::string errorText(int err) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(err, text, sizeof text);
    return text;
}

void setUpLibrariesOnce() {
    static std::once_flag once;
    std::call_once(once, [] {
        av_log_set_level(AV_LOG_QUIET);  // the program has no log
        avformat_network_init();
    });
}

// Real time by media time: the first unit is due at once, each later one as
// far after it as its timestamp says.
class Pacer {
  public:
    // How long to wait before the unit at media time ms is due.
    long long waitMs(long long ms) {
        const long long now = nowMs();
        if (!m_started || ms < m_lastMs - kBackJumpMs || ms - m_lastMs > kLongestGapMs) {
            m_started = true;
            m_baseMs = ms;
            m_baseWall = now;
        }
        m_lastMs = ms;
        return std::max(0LL, m_baseWall + (ms - m_baseMs) - now);
    }

  private:
    bool m_started = false;
    long long m_baseMs = 0, m_baseWall = 0, m_lastMs = 0;
};

struct Closer {
    void operator()(AVFormatContext* f) const { avformat_close_input(&f); }
    void operator()(AVCodecContext* c) const { avcodec_free_context(&c); }
    void operator()(AVPacket* p) const { av_packet_free(&p); }
    void operator()(AVFrame* f) const { av_frame_free(&f); }
};
template <class T>
using Owned = std::unique_ptr<T, Closer>;

}  // namespace

class MediaReader::Session {
  public:
    Session(EventDispatch& dispatch, MediaRequest request, Listener listener,
            std::shared_ptr<bool> alive, std::atomic<bool>& loop)
        : m_dispatch(dispatch),
          m_request(std::move(request)),
          m_listener(std::move(listener)),
          m_alive(std::move(alive)),
          m_loop(loop),
          m_live(isNetworkSource(m_request.source)) {}

    void run();

    void stop() {
        std::lock_guard lock(m_mutex);
        m_stop = true;
        m_wake.notify_all();
    }

  private:
    enum class End { Stopped, Failed, Lost };

    End playOnce();
    std::string openSource(Owned<AVFormatContext>& fmt);
    std::string chooseStream(AVFormatContext* fmt);
    std::string openDecoder(AVStream* stream);
    End readAll(AVFormatContext* fmt);
    void decode(const AVPacket* packet);
    void deliver(const std::uint8_t* data, std::size_t size, std::int64_t ts);

    bool stopping() const { return m_stop.load(); }
    // A wait cut short by the deadline says so; the libraries' text would be
    // "Immediate exit requested".
    std::string reasonFor(int err) const {
        if (err == AVERROR_EOF) return "The stream ended.";
        if (err == AVERROR_EXIT && !stopping()) return "Nothing arrived in time.";
        return errorText(err);
    }
    // False when stopped meanwhile.
    bool sleepFor(long long ms) {
        std::unique_lock lock(m_mutex);
        return !m_wake.wait_for(lock, std::chrono::milliseconds(ms),
                                [this] { return m_stop.load(); });
    }
    void armDeadline(long long ms) { m_deadline = nowMs() + ms; }
    static int interrupted(void* self) {
        auto* s = static_cast<Session*>(self);
        return s->m_stop.load() || nowMs() > s->m_deadline.load();
    }
    void post(MediaEvent event) {
        m_dispatch.post([alive = m_alive, listener = m_listener, e = std::move(event)] {
            if (*alive) listener(e);
        });
    }

    EventDispatch& m_dispatch;
    const MediaRequest m_request;
    const Listener m_listener;
    const std::shared_ptr<bool> m_alive;
    std::atomic<bool>& m_loop;
    const bool m_live;
    std::atomic<bool> m_stop{false};
    std::atomic<long long> m_deadline{0};
    std::mutex m_mutex;
    std::condition_variable m_wake;

    // Per opening of the source.
    std::string m_reason;
    int m_streamIndex = -1;
    AVRational m_timeBase{1, 90000};
    Owned<AVCodecContext> m_decoder;
    Owned<AVFrame> m_frame{av_frame_alloc()};
    Pacer m_pacer;
    long long m_firstMs = -1, m_lastMs = 0, m_lastReportMs = -1;
    long m_units = 0;  // pictures or packets delivered

    // Across openings.
    bool m_everOpened = false;
    bool m_stalled = false;
};

// A file that ends starts again with Loop; a stream that stalls or drops is
// reopened after 1, 2, 4... up to 16 seconds, told once until it is back.
void MediaReader::Session::run() {
    long long retryMs = kFirstRetryMs;
    while (!stopping()) {
        const End end = playOnce();
        if (end == End::Stopped || stopping()) return;
        if (end == End::Failed && (!m_everOpened || !m_live)) {
            post({MediaEvent::Kind::Failed, m_reason});
            return;
        }
        if (!m_live) {
            post({MediaEvent::Kind::Ended});
            // A file with nothing to play would otherwise loop without pause.
            if (!m_loop || m_units == 0) return;
            continue;
        }
        if (m_stalled) {
            retryMs = std::min(retryMs * 2, kLongestRetryMs);
        } else {
            post({MediaEvent::Kind::Stalled, m_reason});
            m_stalled = true;
            retryMs = kFirstRetryMs;
        }
        if (!sleepFor(retryMs)) return;
    }
}

MediaReader::Session::End MediaReader::Session::playOnce() {
    Owned<AVFormatContext> fmt;
    m_reason = openSource(fmt);
    if (m_reason.empty()) m_reason = chooseStream(fmt.get());
    if (!m_reason.empty()) return End::Failed;
    m_firstMs = -1;
    m_lastReportMs = -1;
    m_units = 0;
    m_pacer = Pacer();
    const End end = readAll(fmt.get());
    m_decoder.reset();
    return end;
}

std::string MediaReader::Session::openSource(Owned<AVFormatContext>& fmt) {
    AVFormatContext* ctx = avformat_alloc_context();
    if (!ctx) return errorText(AVERROR(ENOMEM));
    ctx->interrupt_callback = {&Session::interrupted, this};
    armDeadline(kOpenMs);
    int err = avformat_open_input(&ctx, m_request.source.c_str(), nullptr, nullptr);
    if (err < 0) return reasonFor(err);  // the context is freed on failure
    fmt.reset(ctx);
    armDeadline(kOpenMs);
    if ((err = avformat_find_stream_info(ctx, nullptr)) < 0) return reasonFor(err);
    return "";
}

// A 608 track first: its packets are the caption data, no decoding needed.
// Otherwise the best video stream, whose pictures may carry A/53 data.
std::string MediaReader::Session::chooseStream(AVFormatContext* fmt) {
    m_streamIndex = -1;
    for (unsigned i = 0; i < fmt->nb_streams && m_streamIndex < 0; ++i)
        if (fmt->streams[i]->codecpar->codec_id == AV_CODEC_ID_EIA_608)
            m_streamIndex = static_cast<int>(i);
    const bool track = m_streamIndex >= 0;
    if (!track) m_streamIndex = av_find_best_stream(fmt, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (m_streamIndex < 0) return "No video or caption track in this source.";
    for (unsigned i = 0; i < fmt->nb_streams; ++i)
        if (static_cast<int>(i) != m_streamIndex) fmt->streams[i]->discard = AVDISCARD_ALL;
    AVStream* stream = fmt->streams[m_streamIndex];
    m_timeBase = stream->time_base;
    if (!track)
        if (std::string e = openDecoder(stream); !e.empty()) return e;
    std::string text = "#" + std::to_string(m_streamIndex) + " " +
                       avcodec_get_name(stream->codecpar->codec_id) +
                       (track ? " caption track" : " video, A/53 caption data");
    if (!m_everOpened) post({MediaEvent::Kind::Opened, text});
    m_everOpened = true;
    return "";
}

// Only the caption data is wanted. Measured on MPEG-2 and H.264: skipping the
// loop filter and the inverse transform, and the fast flag, keep every
// picture's caption data and save a sixth to a fifth of the work. Skipping
// pictures (skip_frame) loses H.264 captions and bunches and reorders MPEG-2
// ones, so every picture is decoded. One thread: more only add work.
std::string MediaReader::Session::openDecoder(AVStream* stream) {
    const AVCodec* codec = avcodec_find_decoder(stream->codecpar->codec_id);
    if (!codec)
        return std::string("No decoder for ") + avcodec_get_name(stream->codecpar->codec_id) + ".";
    m_decoder.reset(avcodec_alloc_context3(codec));
    if (!m_decoder) return errorText(AVERROR(ENOMEM));
    avcodec_parameters_to_context(m_decoder.get(), stream->codecpar);
    m_decoder->skip_loop_filter = AVDISCARD_ALL;
    m_decoder->skip_idct = AVDISCARD_ALL;
    m_decoder->flags2 |= AV_CODEC_FLAG2_FAST;
    m_decoder->thread_count = 1;
    const int err = avcodec_open2(m_decoder.get(), codec, nullptr);
    return err < 0 ? errorText(err) : "";
}

MediaReader::Session::End MediaReader::Session::readAll(AVFormatContext* fmt) {
    Owned<AVPacket> packet(av_packet_alloc());
    while (!stopping()) {
        armDeadline(m_live ? kStallMs : kOpenMs);
        const int err = av_read_frame(fmt, packet.get());
        if (err == AVERROR(EAGAIN)) {
            if (!sleepFor(5)) break;
            continue;
        }
        if (err < 0) {
            if (m_decoder) decode(nullptr);
            m_reason = reasonFor(err);
            return stopping() ? End::Stopped : End::Lost;
        }
        if (packet->stream_index == m_streamIndex) {
            if (m_decoder)
                decode(packet.get());
            else
                deliver(packet->data, static_cast<std::size_t>(packet->size),
                        packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts);
        }
        av_packet_unref(packet.get());
    }
    return End::Stopped;
}

// A packet the decoder refuses is skipped: a broken picture costs at most its
// own caption pair.
void MediaReader::Session::decode(const AVPacket* packet) {
    if (avcodec_send_packet(m_decoder.get(), packet) < 0 && packet) return;
    while (!stopping() && avcodec_receive_frame(m_decoder.get(), m_frame.get()) >= 0) {
        const AVFrameSideData* cc = av_frame_get_side_data(m_frame.get(), AV_FRAME_DATA_A53_CC);
        deliver(cc ? cc->data : nullptr, cc ? cc->size : 0, m_frame->best_effort_timestamp);
        av_frame_unref(m_frame.get());
    }
}

void MediaReader::Session::deliver(const std::uint8_t* data, std::size_t size, std::int64_t ts) {
    long long ms = m_lastMs;
    if (ts != AV_NOPTS_VALUE) ms = av_rescale_q(ts, m_timeBase, AVRational{1, 1000});
    if (m_firstMs < 0 || ms < m_firstMs) m_firstMs = ms;
    m_lastMs = ms;
    if (!m_live && !sleepFor(m_pacer.waitMs(ms))) return;
    ++m_units;
    if (m_stalled) {
        m_stalled = false;
        post({MediaEvent::Kind::Resumed});
    }
    const long long position = ms - m_firstMs;
    if (size > 0) {
        post({MediaEvent::Kind::CaptionData, "",
              std::string(reinterpret_cast<const char*>(data), size), position});
        m_lastReportMs = position;
    } else if (m_lastReportMs < 0 || position - m_lastReportMs >= kPositionEveryMs ||
               position < m_lastReportMs) {
        post({MediaEvent::Kind::Position, "", "", position});
        m_lastReportMs = position;
    }
}

MediaReader::MediaReader(EventDispatch& dispatch) : m_dispatch(dispatch) {
    setUpLibrariesOnce();
}

MediaReader::~MediaReader() {
    close();
}

void MediaReader::open(const MediaRequest& request, Listener onEvent) {
    close();
    m_loop = request.loop;
    m_alive = std::make_shared<bool>(true);
    m_session = std::make_unique<Session>(m_dispatch, request, std::move(onEvent), m_alive, m_loop);
    m_thread = std::thread([session = m_session.get()] { session->run(); });
}

// The worker ends within one read's wait: every blocking call of the
// libraries asks the session whether to give up.
void MediaReader::close() {
    if (m_alive) *m_alive = false;
    if (m_session) m_session->stop();
    if (m_thread.joinable()) m_thread.join();
    m_session.reset();
}

}  // namespace zelvan
