#include "support/frmansitable.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QVBoxLayout>

#include "support/datafiles.h"
#include "support/rtfreader.h"

namespace zelvan {

frmAnsiTable::frmAnsiTable(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("frmAnsiTable"));
    setWindowTitle(QStringLiteral("Ascii"));
    setAttribute(Qt::WA_DeleteOnClose);
    rtbAnsi = new QTextBrowser(this);
    rtbAnsi->setObjectName(QStringLiteral("rtbAnsi"));
    rtbAnsi->viewport()->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(rtbAnsi);
    resize(640, 560);
}

void frmAnsiTable::loadFile(const QString& path) {
    const auto data = readWholeFile(path.toStdString());
    if (!data) {
        rtbAnsi->clear();
        return;
    }
    rtbAnsi->setHtml(QString::fromStdString(rtf::toHtml(rtf::parse(*data))));
}

bool frmAnsiTable::eventFilter(QObject* watched, QEvent* e) {
    if (watched == rtbAnsi->viewport() && e->type() == QEvent::MouseButtonDblClick) {
        close();
        return true;
    }
    return QWidget::eventFilter(watched, e);
}

QString ansiReferencePath() {
    return QString::fromStdString(findAnsiReference(
        QDir::currentPath().toStdString(), QCoreApplication::applicationDirPath().toStdString()));
}

}  // namespace zelvan
