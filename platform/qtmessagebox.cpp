#include "platform/qtmessagebox.h"

#include <QLabel>
#include <QMessageBox>

#include "platform/qtext.h"

namespace zelvan {

namespace {

QMessageBox* makeBox(QWidget* parent, const std::string& text, const std::string& detail) {
    auto* box = new QMessageBox(QMessageBox::NoIcon, QString::fromLatin1(kMessageTitle),
                                toQString(text), QMessageBox::Ok, parent);
    if (!detail.empty()) box->setInformativeText(toQString(detail));
    return box;
}

}  // namespace

void showMessageBox(QWidget* parent, const std::string& text, const std::string& detail) {
    QMessageBox* box = makeBox(parent, text, detail);
    box->exec();
    delete box;
}

void showAlertBox(QWidget* parent, const std::string& text, const std::string& detail) {
    QMessageBox* box = makeBox(parent, text, detail);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

QLabel* makeNoticeLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QStringLiteral("lblNotice"));
    label->setStyleSheet(QStringLiteral("color: red"));
    label->setWordWrap(true);
    label->setMinimumHeight(2 * label->fontMetrics().lineSpacing());
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return label;
}

}  // namespace zelvan
