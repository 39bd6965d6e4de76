#include "demo/videomaker.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
}

#include <cstring>
#include <memory>

namespace zelvan {

namespace {

constexpr AVRational kFrameTime{1001, 30000};
constexpr std::uint16_t kPadding = 0x8080;

std::string errorText(int err) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(err, text, sizeof text);
    return text;
}

// One cc_data triple: marker bits, cc_valid, cc_type 0 for field 1, 1 for field 2.
void putTriple(std::uint8_t* at, int field, std::uint16_t word) {
    at[0] = static_cast<std::uint8_t>(0xFC | (field - 1));
    at[1] = static_cast<std::uint8_t>(word >> 8);
    at[2] = static_cast<std::uint8_t>(word & 0xFF);
}

// Both fields, the chosen one with the word and the other with padding.
void putCcData(std::uint8_t* at, int field, std::uint16_t word) {
    putTriple(at, 1, field == 1 ? word : kPadding);
    putTriple(at + 3, 2, field == 2 ? word : kPadding);
}

struct Closer {
    void operator()(AVCodecContext* c) const { avcodec_free_context(&c); }
    void operator()(AVFrame* f) const { av_frame_free(&f); }
    void operator()(AVPacket* p) const { av_packet_free(&p); }
    void operator()(AVFormatContext* f) const {
        if (f->pb) avio_closep(&f->pb);
        avformat_free_context(f);
    }
};
template <class T>
using Owned = std::unique_ptr<T, Closer>;

class Maker {
  public:
    Maker(const VideoShape& shape) : m_shape(shape) {}

    std::string make(const std::string& path, const std::vector<std::uint16_t>& words) {
        static constexpr const char* kFormats[] = {"mpegts", "mp4", "mov"};
        AVFormatContext* out = nullptr;
        int err = avformat_alloc_output_context2(&out, nullptr,
                                                 kFormats[static_cast<int>(m_shape.kind)], nullptr);
        if (err < 0) return errorText(err);
        m_out.reset(out);
        if (std::string e = openVideo(); !e.empty()) return e;
        if (m_shape.kind == VideoKind::C608Mov) addCaptionTrack();
        if ((err = avio_open(&m_out->pb, path.c_str(), AVIO_FLAG_WRITE)) < 0) return errorText(err);
        if ((err = avformat_write_header(m_out.get(), nullptr)) < 0) return errorText(err);
        const std::size_t frames = words.size() + static_cast<std::size_t>(m_shape.tailFrames);
        for (std::size_t i = 0; i < frames; ++i) {
            const std::uint16_t word = i < words.size() ? words[i] : kPadding;
            if (std::string e = writeFrame(static_cast<long>(i), word); !e.empty()) return e;
        }
        if ((err = encode(nullptr)) < 0) return errorText(err);
        return (err = av_write_trailer(m_out.get())) < 0 ? errorText(err) : "";
    }

  private:
    std::string openVideo() {
        const bool h264 = m_shape.kind == VideoKind::H264Mp4;
        const AVCodec* codec = avcodec_find_encoder_by_name(h264 ? "libx264" : "mpeg2video");
        if (!codec) return "no encoder";
        m_enc.reset(avcodec_alloc_context3(codec));
        m_enc->width = m_shape.width;
        m_enc->height = m_shape.height;
        m_enc->time_base = kFrameTime;
        m_enc->framerate = av_inv_q(kFrameTime);
        m_enc->pix_fmt = AV_PIX_FMT_YUV420P;
        m_enc->gop_size = 15;
        m_enc->max_b_frames = h264 && !m_shape.moving ? 0 : 2;
        // A moving picture is coded as a broadcaster would, at 6 Mbit/s.
        if (m_shape.moving) m_enc->bit_rate = 6'000'000;
        if (h264)
            av_opt_set(m_enc->priv_data, "preset", m_shape.moving ? "veryfast" : "ultrafast", 0);
        if (m_out->oformat->flags & AVFMT_GLOBALHEADER) m_enc->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        int err = avcodec_open2(m_enc.get(), codec, nullptr);
        if (err < 0) return errorText(err);
        m_video = avformat_new_stream(m_out.get(), nullptr);
        m_video->time_base = kFrameTime;
        avcodec_parameters_from_context(m_video->codecpar, m_enc.get());
        m_frame.reset(av_frame_alloc());
        m_frame->format = AV_PIX_FMT_YUV420P;
        m_frame->width = m_shape.width;
        m_frame->height = m_shape.height;
        m_packet.reset(av_packet_alloc());
        return (err = av_frame_get_buffer(m_frame.get(), 0)) < 0 ? errorText(err) : "";
    }

    void addCaptionTrack() {
        m_captions = avformat_new_stream(m_out.get(), nullptr);
        m_captions->time_base = kFrameTime;
        m_captions->codecpar->codec_type = AVMEDIA_TYPE_SUBTITLE;
        m_captions->codecpar->codec_id = AV_CODEC_ID_EIA_608;
    }

    // A grey picture, or a moving gradient; the words ride along as side data,
    // or in the caption track.
    std::string writeFrame(long n, std::uint16_t word) {
        av_frame_make_writable(m_frame.get());
        paint(n);
        m_frame->pts = n;
        av_frame_remove_side_data(m_frame.get(), AV_FRAME_DATA_A53_CC);
        if (m_captions) {
            if (int err = writeCaptionPacket(n, word); err < 0) return errorText(err);
        } else if (AVFrameSideData* sd =
                       av_frame_new_side_data(m_frame.get(), AV_FRAME_DATA_A53_CC, 6)) {
            putCcData(sd->data, m_shape.field, word);
        }
        const int err = encode(m_frame.get());
        return err < 0 ? errorText(err) : "";
    }

    void paint(long n) {
        for (int plane = 0; plane < 3; ++plane) {
            const int h = plane ? m_shape.height / 2 : m_shape.height;
            const int w = plane ? m_shape.width / 2 : m_shape.width;
            for (int y = 0; y < h; ++y) {
                std::uint8_t* row = m_frame->data[plane] + y * m_frame->linesize[plane];
                if (!m_shape.moving || plane) {
                    std::memset(row, plane ? 128 : 100, static_cast<std::size_t>(w));
                    continue;
                }
                // A gradient that drifts, and a grain that changes every frame.
                for (int x = 0; x < w; ++x)
                    row[x] = static_cast<std::uint8_t>(x / 4 + y / 3 + n * 2 +
                                                       ((x * 7 + y * 13 + n * 31) % 17));
            }
        }
    }

    int writeCaptionPacket(long n, std::uint16_t word) {
        Owned<AVPacket> p(av_packet_alloc());
        if (int err = av_new_packet(p.get(), 3); err < 0) return err;
        putTriple(p->data, m_shape.field, word);
        p->pts = p->dts = n;
        p->duration = 1;
        p->stream_index = m_captions->index;
        av_packet_rescale_ts(p.get(), kFrameTime, m_captions->time_base);
        return av_interleaved_write_frame(m_out.get(), p.get());
    }

    int encode(AVFrame* frame) {
        int err = avcodec_send_frame(m_enc.get(), frame);
        while (err >= 0) {
            err = avcodec_receive_packet(m_enc.get(), m_packet.get());
            if (err == AVERROR(EAGAIN) || err == AVERROR_EOF) return 0;
            if (err < 0) return err;
            av_packet_rescale_ts(m_packet.get(), kFrameTime, m_video->time_base);
            m_packet->stream_index = m_video->index;
            err = av_interleaved_write_frame(m_out.get(), m_packet.get());
        }
        return err;
    }

    VideoShape m_shape;
    Owned<AVFormatContext> m_out;
    Owned<AVCodecContext> m_enc;
    Owned<AVFrame> m_frame;
    Owned<AVPacket> m_packet;
    AVStream* m_video = nullptr;
    AVStream* m_captions = nullptr;
};

}  // namespace

std::vector<std::uint16_t> wordsPerFrame(const SccRecording& recording) {
    std::vector<std::uint16_t> words;
    for (const SccTimedWord& w : sccSchedule(recording)) {
        if (words.size() <= static_cast<std::size_t>(w.frame))
            words.resize(static_cast<std::size_t>(w.frame) + 1, kPadding);
        words[static_cast<std::size_t>(w.frame)] = w.word;
    }
    return words;
}

std::string boxStream(const std::vector<std::uint16_t>& words) {
    std::string s;
    for (std::uint16_t w : words)
        if ((w & 0x7F7F) != 0) s += sccWordBytes(w);
    return s;
}

std::string makeVideo(const std::string& path, const VideoShape& shape,
                      const std::vector<std::uint16_t>& words) {
    av_log_set_level(AV_LOG_ERROR);  // the encoders' reports are of no use here
    return Maker(shape).make(path, words);
}

}  // namespace zelvan
