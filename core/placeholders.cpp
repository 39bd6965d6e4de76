#include "core/placeholders.h"

#include <QApplication>
#include <QVBoxLayout>

namespace zelvan {

namespace {

const char* titleOf(FilterKind kind) {
    switch (kind) {
        case FilterKind::L21Serial:
            return "Line-21 (Serial)";
        case FilterKind::L21USB:
            return "Line-21 (Adrienne USB)";
        case FilterKind::Ascii:
            return "Ascii (Serial)";
        case FilterKind::Key:
            return "Ascii (Keyboard)";
        case FilterKind::TDS:
            break;
    }
    return "TDS File";
}

void addNotice(QWidget* w, const QString& title) {
    w->setWindowTitle(title);
    auto* layout = new QVBoxLayout(w);
    layout->addWidget(
        new QLabel(QStringLiteral("Placeholder: this window is not built yet.\n"
                                  "It takes part in start-up and shutdown, but does nothing else."),
                   w));
    w->resize(360, 80);
}

}  // namespace

void placeUnderMainWindow(QWidget* w) {
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->objectName() == QLatin1String("frmTavo")) {
            w->move(top->frameGeometry().left(), top->frameGeometry().height());
            return;
        }
    }
}

PlaceholderFilter::PlaceholderFilter(FilterKind kind, Tavo& tavo)
    : QWidget(nullptr, Qt::Window), m_kind(kind), m_tavo(tavo) {
    addNotice(this, QString::fromLatin1(titleOf(kind)));
}

// Mirrors what the real windows do to the shared state: the board and ASCII
// windows set the filter type, the keyboard window starts capture, and the
// board window's hideForm raises the stop.
void PlaceholderFilter::showForm() {
    if (m_kind == FilterKind::L21USB) m_tavo.InputFilterType = 2;
    if (m_kind == FilterKind::Ascii) m_tavo.InputFilterType = 3;
    placeUnderMainWindow(this);
    show();
    if (m_kind == FilterKind::Key) m_tavo.captureLoop();
}

void PlaceholderFilter::hideForm() {
    if (m_kind == FilterKind::L21USB) m_tavo.bStopCapture = true;
    hide();
}

std::int16_t PlaceholderFilter::filterEntry(const std::string&, std::string& outString) {
    outString.clear();
    return kStyleNothing;
}

std::string PlaceholderFilter::getExternalText(std::int16_t) {
    return {};
}
std::string PlaceholderFilter::getExternalTextTrimmed(std::int16_t) {
    return {};
}

}  // namespace zelvan
