#pragma once
// Test doubles of the window side: a main view with in-memory panes, and a
// shell, filters and a display that record their calls into one shared log.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/mainconsole.h"
#include "core/tavo.h"
#include "platform/settingsstore.h"
#include "platform/tone.h"
#include "support/memorysettingsstore.h"
#include "support/virtualdispatch.h"

namespace zelvan::testing {

class FakeView : public MainView {
  public:
    HistoryPane& rtbRawHistory() override { return raw; }
    HistoryPane& rtbReadHistory() override { return read; }
    void setTotChars(const std::string& text) override { totChars = text; }
    void doStatus(const std::string& text) override { status = text; }
    void showFilterOption(FilterKind kind) override { option = kind; }
    void showOutDWValue(int value) override { outDW = value; }

    TextPane raw, read;
    std::string totChars, status;
    FilterKind option = FilterKind::TDS;
    int outDW = 0;
};

class RecordingTone : public Tone {
  public:
    void play(int hz, int ms) override { tones.push_back({hz, ms}); }
    std::vector<std::pair<int, int>> tones;
};

using Log = std::vector<std::string>;

// A filter that echoes each character into row 1 and reports a style of the
// test's choosing; its showForm runs a hook the test gives.
class FakeFilter : public InputFilter {
  public:
    FakeFilter(std::string name, Log& log) : name(std::move(name)), log(log) {}
    void showForm() override {
        log.push_back(name + ".showForm");
        if (onShow) onShow();
    }
    void hideForm() override { log.push_back(name + ".hideForm"); }
    std::int16_t filterEntry(const std::string& in, std::string& out) override {
        received += in;
        out.clear();
        return styleFor ? styleFor(in[0]) : std::int16_t{kStyleNothing};
    }
    std::string getExternalText(std::int16_t i) override {
        return i == 1 ? received : std::string();
    }
    std::string getExternalTextTrimmed(std::int16_t i) override { return getExternalText(i); }

    std::string name;
    Log& log;
    std::string received;
    std::function<void()> onShow;
    std::function<std::int16_t(char)> styleFor;
};

class FakeDisplay : public DisplayOutput {
  public:
    explicit FakeDisplay(Log& log) : log(log) {}
    void showForm() override { log.push_back("display.showForm"); }
    void hideForm() override { log.push_back("display.hideForm"); }
    void doInput(std::int16_t style, const std::string&) override { styles.push_back(style); }
    void showStartupBarker(bool bDoIt) override {
        log.push_back(bDoIt ? "display.showStartupBarker(true)"
                            : "display.showStartupBarker(false)");
    }
    void DWErase() override { log.push_back("display.DWErase"); }

    Log& log;
    std::vector<std::int16_t> styles;
};

// The display output in use, reading the rows as the real one does; it keeps
// what it sees at each style but nothing: "<stamp>1: 14[...] 15[...]".
class CaptionRecorder : public DisplayOutput {
  public:
    explicit CaptionRecorder(Tavo& tavo) : tavo(tavo) {
        tavo.frmOutDW = this;
        tavo.bOutDW = true;
    }
    void showForm() override {}
    void hideForm() override {}
    void showStartupBarker(bool) override {}
    void DWErase() override {}
    std::int16_t rowsInUse() const override { return rows; }
    void doInput(std::int16_t style, const std::string&) override {
        ++calls;
        if (style == kStyleNothing) return;
        std::string caption = (stamp ? stamp() : "") + std::to_string(style) + ":";
        for (std::int16_t i = 1; i <= 15; ++i)
            if (const std::string row = tavo.getExternalText(i); !row.empty())
                caption += " " + std::to_string(i) + "[" + row + "]";
        captions.push_back(caption);
    }

    Tavo& tavo;
    std::function<std::string()> stamp;
    std::int16_t rows = 3;
    std::vector<std::string> captions;
    long calls = 0;
};

class FakeShell : public Shell {
  public:
    explicit FakeShell(Log& log) : log(log) {}
    void setBusyPointer(bool busy) override { log.push_back(busy ? "busy" : "idle"); }
    void showSplash() override { log.push_back("splash"); }
    MainConsole& showMainWindow(Tavo& tavo) override {
        log.push_back("mainWindow");
        console = std::make_unique<MainConsole>(tavo, view, *this);
        return *console;
    }
    std::unique_ptr<InputFilter> makeFilter(FilterKind kind, Tavo&) override {
        static const char* names[] = {"L21Serial", "L21USB", "Ascii", "Key", "TDS", "L21Video"};
        auto f = std::make_unique<FakeFilter>(names[static_cast<int>(kind)], log);
        if (onMake) onMake(kind, *f);
        lastFilter = f.get();
        return f;
    }
    std::unique_ptr<DisplayOutput> makeDisplay(Tavo&) override {
        auto d = std::make_unique<FakeDisplay>(log);
        display = d.get();
        return d;
    }
    void showAbout() override { log.push_back("about"); }
    void showHelp() override { log.push_back("help"); }
    void endProcess() override { log.push_back("endProcess"); }

    Log& log;
    FakeView view;
    std::unique_ptr<MainConsole> console;
    FakeFilter* lastFilter = nullptr;
    FakeDisplay* display = nullptr;
    std::function<void(FilterKind, FakeFilter&)> onMake;
};

// A fresh program state, on virtual time unless told otherwise, with the main
// window faked.
template <typename Dispatch, typename Store = MemorySettingsStore>
struct RigOf {
    Dispatch dispatch;
    Store store;
    RecordingTone tone;
    Log log;
    FakeShell shell{log};
    Tavo tavo{dispatch, store, tone};

    MainConsole& console() {
        if (!shell.console) shell.showMainWindow(tavo);
        return *shell.console;
    }
    FakeView& view() { return shell.view; }
    void queue(const std::string& bytes) {
        for (unsigned char b : bytes) tavo.queueByte(b);
    }
};
using Rig = RigOf<VirtualDispatch>;

}  // namespace zelvan::testing
