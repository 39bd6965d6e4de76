#pragma once
// The caption file window's rules, without a window: the script read from a
// file, the caption on deck in the rows, what the sign shows, and the three
// actions an operator steps with: Send, Rewind and Erase. The Qt window
// frmInTDS binds its controls, menu and keys to this class; tests drive it
// with a fake view on virtual time.
//
// This filter stands beside the capture ring: nothing here queues a byte.
// Each action calls the display output itself, with the rows as a whole
// changed, and the display reads the rows through the row readers.
//
// A subtitle file (SubRip, WebVTT) is fitted to the sign: its cues are laid
// out in rows of 32 columns, and a cue with more rows than the display uses
// steps out as several captions. It can also be played on time; while it
// plays, Send and Rewind move the clock from cue to cue and Erase blanks the
// sign until the next cue. A TDS or text script keeps its lines as written
// and can't be played.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/inputfilter.h"
#include "core/tavo.h"
#include "textinput/captionscript.h"
#include "textinput/subtitleplayer.h"
#include "textinput/textrows.h"

namespace zelvan {

inline constexpr const char* kTdsTitle = "Input: TDS File";
inline constexpr const char* kTdsDialogTitle = "Select Target File";
// Pairs of "what the operator reads|the patterns", the first one chosen.
inline constexpr const char* kTdsFileFilter =
    "TDS,Text (tds;txt)|*.tds;*.txt|SubRip (srt)|*.srt|WebVTT (vtt)|*.vtt|All (*)|*.*";
inline constexpr const char* kTdsDefaultOffset = "+00:00:00:00";

// Key codes the window acts on, whatever Shift or Ctrl is held.
inline constexpr int kKeyPageUp = 33;    // Rewind
inline constexpr int kKeyPageDown = 34;  // Send
inline constexpr int kKeyE = 69;         // Erase
inline constexpr int kKeyF1 = 112;       // Help

class TdsView {
  public:
    virtual ~TdsView() = default;
    // Left edge at the main window's left edge, top at its height.
    virtual void placeWindow() = 0;
    // Modeless, owned by the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // The open-file dialog, starting at `start`: the chosen file's full path,
    // or nothing when the operator cancels.
    virtual std::optional<std::string> chooseFile(const std::string& title,
                                                  const std::string& start,
                                                  const std::string& filter) = 0;
    virtual void setFileName(const std::string& name) = 0;       // tbTDSFile
    virtual void setOffsetText(const std::string& text) = 0;     // tbTCOffset
    virtual void setDisplayedText(const std::string& text) = 0;  // rtbCaptionCurrent
    virtual void setOnDeckText(const std::string& text) = 0;     // rtbCaptionNext
    virtual void focusSend() = 0;
    virtual void showHelp() = 0;
    // Playback: the Play button (enabled for a timed file; "Pause" while
    // playing), the clock, and the Start at and Offset boxes' text.
    virtual void showPlayState(bool enabled, bool playing) = 0;
    virtual void setClockText(const std::string& text) = 0;
    virtual void setPlaybackBoxes(const std::string& startAt, const std::string& offset) = 0;
};

class TdsInput : public InputFilter {
  public:
    TdsInput(Tavo& tavo, TdsView& view);

    // --- the filter contract ---
    void showForm() override;
    void hideForm() override;
    // No producer feeds this filter; it only meets bytes another input left
    // on the ring, and takes them as the ASCII serial filter does.
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override;
    std::string getExternalText(std::int16_t i) override;
    std::string getExternalTextTrimmed(std::int16_t i) override;

    // --- the operator's actions ---
    void send();
    void rewind();
    void erase();
    // cmdSelectTDSFile and mnuFileOpen.
    void openFile();
    // The window sees every key first, by its code; the menu entries come
    // through here with the code of their key.
    void keyDown(int keyCode);
    // Play and Pause by turns, for a file with timings.
    void playPause();
    // The Start at and Offset boxes changed; text that is no time is ignored.
    void startAtChanged(const std::string& text);
    void offsetChanged(const std::string& text);
    SubtitlePlayer& player() { return m_player; }

    const std::vector<script::Caption>& captionList() const { return m_script.captions; }
    std::int32_t iNextCaption() const { return m_iNextCaption; }
    bool bFileLoaded() const { return m_bFileLoaded; }
    const std::string& sFilePath() const { return m_sFilePath; }
    const std::string& onDeckText() const { return m_onDeckPane; }
    const std::string& displayedText() const { return m_displayed; }
    // The window's state as text, for tests and debugging.
    std::string dump() const;

  private:
    void clearRows();
    void addRow(const std::string& line);
    void nextCaption();
    void putOnRows(const std::string& caption);
    void toDisplay();
    void setDisplayed(const std::string& text);
    int rowsInUse() const;
    void putOnDeck(std::vector<std::string> lines);
    void showPlayed(const Rows& rows);
    void playerMoved();

    Tavo& m_tavo;
    TdsView& m_view;
    TextRows m_rows;
    AsciiFilter m_filter{m_rows};
    script::Script m_script;
    std::int32_t m_iNextCaption = 1;
    // The fitted rows of a subtitle cue that are still to come on deck.
    std::vector<std::string> m_cueRest;
    std::int32_t m_followedCue = 0;  // the next cue that "On Deck:" shows while playing
    bool m_bFileLoaded = false;
    std::string m_sFilePath;
    std::string m_fileName;
    // The caption on deck as the rows take it (at most 15 lines), the pane's
    // text (which also says how many lines were left out) and what was sent last.
    std::string m_onDeck;
    std::string m_onDeckPane;
    std::string m_displayed;
    SubtitlePlayer m_player;
};

}  // namespace zelvan
