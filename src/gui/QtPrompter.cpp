#include "gui/QtPrompter.h"

#include "gui/QtText.h"

#include <QApplication>
#include <QMessageBox>

namespace {

QMessageBox::Icon IconOf(EPromptIcon icon) {
    switch (icon) {
    case EPromptIcon::Stop:
        return QMessageBox::Critical;
    case EPromptIcon::Exclamation:
        return QMessageBox::Warning;
    case EPromptIcon::Question:
        return QMessageBox::Question;
    case EPromptIcon::Information:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QMessageBox::StandardButton ButtonOf(EPromptAnswer answer) {
    switch (answer) {
    case EPromptAnswer::Yes:
        return QMessageBox::Yes;
    case EPromptAnswer::No:
        return QMessageBox::No;
    case EPromptAnswer::Cancel:
        return QMessageBox::Cancel;
    default:
        return QMessageBox::Ok;
    }
}

} // namespace

EPromptAnswer CQtPrompter::Ask(const SPrompt& prompt) {
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    switch (prompt.buttons) {
    case EPromptButtons::OkCancel:
        buttons = QMessageBox::Ok | QMessageBox::Cancel;
        break;
    case EPromptButtons::YesNo:
        buttons = QMessageBox::Yes | QMessageBox::No;
        break;
    case EPromptButtons::YesNoCancel:
        buttons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        break;
    default:
        break;
    }
    const QString caption =
        prompt.caption.empty() ? QApplication::applicationDisplayName() : Q(prompt.caption);
    QMessageBox box(IconOf(prompt.icon), caption, Q(prompt.text), buttons, m_parent);
    box.setDefaultButton(ButtonOf(prompt.defaultAnswer));
    if (prompt.topmost)
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return EPromptAnswer::Yes;
    case QMessageBox::No:
        return EPromptAnswer::No;
    case QMessageBox::Cancel:
        return EPromptAnswer::Cancel;
    default:
        return EPromptAnswer::Ok;
    }
}
