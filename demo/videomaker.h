#pragma once
// Makes video files that carry line-21 caption words, with FFmpeg's own
// encoders and muxers, the way broadcast and production tools carry them:
// A/53 caption data in MPEG-2 or H.264 pictures, or a QuickTime 608 track
// beside a picture track. One word goes out a frame, 29.97 frames a second.

#include <cstdint>
#include <string>
#include <vector>

#include "core/sccreader.h"

namespace zelvan {

enum class VideoKind {
    Mpeg2Ts,  // MPEG-2 video in a transport stream, A/53 data in the pictures
    H264Mp4,  // H.264 (libx264) in MP4, A/53 data in SEI messages
    C608Mov,  // a 608 caption track beside an MPEG-2 picture track, in MOV
};

struct VideoShape {
    VideoKind kind = VideoKind::Mpeg2Ts;
    int width = 160;
    int height = 96;
    int field = 1;  // the field whose cc_type carries the words; the other gets padding
    // Frames of moving picture, as a camera gives, rather than a still one.
    bool moving = false;
    // Pictures after the last word, so the end isn't the last caption.
    int tailFrames = 15;
};

// One word a frame from frame 0: the recording's schedule, with the padding
// word 0x8080 in the frames between.
std::vector<std::uint16_t> wordsPerFrame(const SccRecording& recording);

// The words with parity stripped and padding dropped: what a decoder box
// delivers for them.
std::string boxStream(const std::vector<std::uint16_t>& words);

// Writes the file; returns "" or FFmpeg's reason for failing.
std::string makeVideo(const std::string& path, const VideoShape& shape,
                      const std::vector<std::uint16_t>& words);

}  // namespace zelvan
