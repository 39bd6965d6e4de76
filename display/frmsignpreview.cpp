#include "display/frmsignpreview.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <charconv>

#include "display/ledfont.h"
#include "platform/qtext.h"

namespace zelvan {

namespace {

constexpr const char* kSection = "SignPreview";
// At first the preview takes the room right of the decoder window and below
// the display window, as far as the screen allows.
constexpr int kDefaultLeft = 800;
constexpr int kDefaultTop = 410;
constexpr int kDefaultWidth = 860;
constexpr int kDefaultHeight = 560;
constexpr int kSmallest = 320;

// Cells are six dots wide with the gap; a margin of two dots all round.
constexpr int kMarginDots = 2;
constexpr int kCellPitchDots = kGlyphColumns + 1;
constexpr int kWideDots = kSignColumns * kCellPitchDots - 1 + 2 * kMarginDots;
constexpr int kHighDots = kSignRows * kRollDotRows - 2 + 2 * kMarginDots;

const QColor kBoard(18, 12, 8);
const QColor kUnlit(48, 30, 10);
const QColor kBright(255, 176, 0);
const QColor kDim(150, 96, 10);

int storedNumber(const SettingsStore& store, const char* key, int fallback) {
    const std::string text = store.get(kSection, key, std::to_string(fallback));
    int value = 0;
    const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    return ec == std::errc() && ptr == text.data() + text.size() ? value : fallback;
}

QLabel* caption(const char* text) {
    auto* label = new QLabel(QString::fromLatin1(text));
    label->setStyleSheet(QStringLiteral("color: #888; font-weight: bold;"));
    return label;
}

}  // namespace

LedSignView::LedSignView(const SignPreview& preview, SignSide side, QWidget* parent)
    : QWidget(parent), m_preview(preview), m_side(side) {
    setMinimumSize(kWideDots * 2, kHighDots * 2);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize LedSignView::sizeHint() const {
    return {kWideDots * 4, kHighDots * 4};
}

// The board with every LED dark is drawn once for a size; a paint lays the
// lit dots over it, one small picture each.
void LedSignView::paintEvent(QPaintEvent*) {
    const double pitch = std::min(width() / double(kWideDots), height() / double(kHighDots));
    const QPointF origin((width() - pitch * kWideDots) / 2 + pitch * kMarginDots,
                         (height() - pitch * kHighDots) / 2 + pitch * kMarginDots);
    if (m_dark.size() != size()) m_dark = darkBoard(pitch, origin);
    const bool bright = m_preview.model().bright;
    QPixmap& litDot = bright ? m_brightDot : m_dimDot;
    if (litDot.isNull() || m_dotPitch != pitch) {
        m_dotPitch = pitch;
        m_brightDot = dotPicture(pitch, kBright);
        m_dimDot = dotPicture(pitch, kDim);
    }
    QPainter p(this);
    p.drawPixmap(0, 0, m_dark);
    for (int row = 0; row < kSignRows; ++row)
        for (int column = 0; column < kSignColumns; ++column)
            for (int dr = 0; dr < kGlyphRows; ++dr)
                for (int dc = 0; dc < kGlyphColumns; ++dc)
                    if (m_preview.dot(m_side, row, column, dc, dr))
                        p.drawPixmap(dotPlace(pitch, origin, row, column, dc, dr), litDot);
}

QPoint LedSignView::dotPlace(double pitch, QPointF origin, int row, int column, int dc, int dr) {
    return QPointF(origin.x() + pitch * (column * kCellPitchDots + dc),
                   origin.y() + pitch * (row * kRollDotRows + dr))
        .toPoint();
}

QPixmap LedSignView::dotPicture(double pitch, const QColor& colour) {
    const int side = std::max(1, static_cast<int>(pitch * 0.8));
    QPixmap dot(side, side);
    dot.fill(Qt::transparent);
    QPainter p(&dot);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawEllipse(QRectF(0, 0, side, side));
    return dot;
}

QPixmap LedSignView::darkBoard(double pitch, QPointF origin) const {
    QPixmap board(size());
    board.fill(Qt::black);
    QPainter p(&board);
    p.fillRect(QRectF(origin.x() - pitch * kMarginDots, origin.y() - pitch * kMarginDots,
                      pitch * kWideDots, pitch * kHighDots),
               kBoard);
    const QPixmap unlit = dotPicture(pitch, kUnlit);
    for (int row = 0; row < kSignRows; ++row)
        for (int column = 0; column < kSignColumns; ++column)
            for (int dr = 0; dr < kGlyphRows; ++dr)
                for (int dc = 0; dc < kGlyphColumns; ++dc)
                    p.drawPixmap(dotPlace(pitch, origin, row, column, dc, dr), unlit);
    return board;
}

frmSignPreview::frmSignPreview(SerialLink& link, SettingsStore& store)
    : QWidget(nullptr, Qt::Window), m_link(link), m_store(store) {
    setObjectName(QStringLiteral("frmSignPreview"));
    setWindowTitle(QStringLiteral("Sign Preview"));
    auto* layout = new QVBoxLayout(this);
    m_reflector = new LedSignView(m_preview, SignSide::Reflector);
    m_face = new LedSignView(m_preview, SignSide::Face);
    m_status = new QLabel;
    m_status->setObjectName(QStringLiteral("lblSignStatus"));
    layout->addWidget(caption("In the reflector, as the audience reads it"));
    layout->addWidget(m_reflector, 1);
    layout->addWidget(caption("On the sign's face, mirrored"));
    layout->addWidget(m_face, 1);
    layout->addWidget(m_status);
    m_status->setText(toQString(m_preview.status()));
    restorePlace();
    m_link.addTap(m_preview);
    m_refresh.setInterval(SignPreview::kRefreshMs);
    connect(&m_refresh, &QTimer::timeout, this, [this] { refreshNow(); });
    m_refresh.start();
}

frmSignPreview::~frmSignPreview() {
    m_link.removeTap(m_preview);
}

// A hidden window paints nothing, but its model keeps up, so it opens again
// on the sign as it stands.
void frmSignPreview::refreshNow() {
    if (!m_preview.refresh()) return;
    m_reflector->update();
    m_face->update();
    m_status->setText(toQString(m_preview.status()));
}

QString frmSignPreview::statusText() const {
    return m_status->text();
}

void frmSignPreview::restorePlace() {
    QRect place(kDefaultLeft, kDefaultTop, kDefaultWidth, kDefaultHeight);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect room = screen->availableGeometry();
        place.setRight(std::min(place.right(), room.right() - 8));
        place.setBottom(std::min(place.bottom(), room.bottom() - 40));
        if (place.width() < kSmallest) place.moveLeft(std::max(0, room.right() - kSmallest));
        place.setWidth(std::max(place.width(), kSmallest));
        place.setHeight(std::max(place.height(), kSmallest * 2 / 3));
    }
    resize(storedNumber(m_store, "width", place.width()),
           storedNumber(m_store, "height", place.height()));
    move(storedNumber(m_store, "left", place.left()), storedNumber(m_store, "top", place.top()));
    m_placed = true;
}

void frmSignPreview::storePlace() {
    if (!m_placed) return;
    m_store.set(kSection, "left", std::to_string(x()));
    m_store.set(kSection, "top", std::to_string(y()));
    m_store.set(kSection, "width", std::to_string(width()));
    m_store.set(kSection, "height", std::to_string(height()));
}

void frmSignPreview::moveEvent(QMoveEvent* e) {
    QWidget::moveEvent(e);
    storePlace();
}

void frmSignPreview::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    storePlace();
}

}  // namespace zelvan
