#pragma once
// The frames the program's logic sends to the sign for a decoder box's line-21
// stream: the reference the real program's output is held against.

#include <array>
#include <string>

#include "display/console.h"
#include "line21/l21serialinput.h"
#include "support/quietprogram.h"
#include "support/recordinglinkview.h"

namespace zelvan::testing {

// The display window, recorded.
struct RecordingConsoleView : ConsoleView {
    void showBox(ConsoleBox box, bool on) override { boxes[static_cast<std::size_t>(box)] = on; }
    void showFilterCaption(const std::string& caption, int colour) override {
        filter = caption + "/" + std::to_string(colour);
    }
    void showScrollLines(int) override {}
    void showLinesText(const std::string& text) override { linesText = text; }
    void showPending(const std::string& text) override { pending = text; }
    void placeWindow() override { steps += "place "; }
    void showWindow() override { steps += "show "; }
    void hideWindow() override { steps += "hide "; }

    std::array<bool, kConsoleBoxes> boxes{};
    std::string filter, linesText, pending, steps;
};

struct ConsoleOutput : DisplayOutput {
    explicit ConsoleOutput(DisplayConsole& c) : console(c) {}
    void showForm() override { console.showForm(); }
    void hideForm() override { console.hideForm(); }
    void doInput(std::int16_t style, const std::string& line) override {
        console.doInput(style, line);
    }
    void showStartupBarker(bool on) override { console.showStartupBarker(on); }
    void DWErase() override { console.DWErase(); }
    DisplayConsole& console;
};

// After the start-up caption; on virtual time, over fake ports.
inline std::string logicFrames(const std::string& stream) {
    QuietProgram program;
    Tavo& tavo = program.tavo;
    FakeSerialPort signPort(program.dispatch);
    testing::RecordingLinkView linkView;
    RecordingConsoleView consoleView;
    DisplayConsole console(tavo, signPort, linkView, consoleView);
    ConsoleOutput output(console);
    tavo.splitStartupBarker();
    console.formLoad();
    console.showForm();
    tavo.frmOutDW = &output;
    tavo.bOutDW = true;

    InL21 memory;
    RecordingL21SerialView view;
    L21SerialInput input(tavo, memory, program.port, view);
    input.link().openPort();
    memory.view = &input;
    tavo.frmL21Serial = &input;
    tavo.bInL21Serial = true;
    program.dispatch.yield();

    const std::size_t startup = signPort.sent.size();
    program.port.deliver(stream);
    while (program.port.rxCount() > 0 || !tavo.queueEmpty()) tavo.pollInput();
    return signPort.sent.substr(startup);
}

}  // namespace zelvan::testing
