#pragma once
// The port side of the display output: where the frames go. The serial link of
// the display window implements it; the recording and null links stand in for
// it in tests and benchmarks.

#include <string>
#include <utility>
#include <vector>

namespace zelvan {

class DisplayLink {
  public:
    virtual ~DisplayLink() = default;
    virtual bool isPortOpen() = 0;
    // One call per frame: the bytes go out as one write.
    virtual void write(const std::string& bytes) = 0;
    // The display window's timed status notice (with its beep when on).
    virtual void showNotice(bool on, const std::string& text) = 0;
};

// Keeps every write and every notice, in order.
class RecordingDisplayLink : public DisplayLink {
  public:
    bool isPortOpen() override { return open; }
    void write(const std::string& bytes) override { writes.push_back(bytes); }
    void showNotice(bool on, const std::string& text) override { notices.emplace_back(on, text); }

    // Everything written so far as one stream.
    std::string bytes() const {
        std::string all;
        for (const std::string& w : writes) all += w;
        return all;
    }
    void clear() {
        writes.clear();
        notices.clear();
    }

    bool open = true;
    std::vector<std::string> writes;
    std::vector<std::pair<bool, std::string>> notices;
};

// An open port that drops what it gets; counts bytes so nothing is optimised away.
class NullDisplayLink : public DisplayLink {
  public:
    bool isPortOpen() override { return true; }
    void write(const std::string& bytes) override { written += bytes.size(); }
    void showNotice(bool, const std::string&) override {}

    std::size_t written = 0;
};

}  // namespace zelvan
