#include "gui/DatafilesChooser.h"

#include "gui/QtText.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

CDatafilesChooserDlg::CDatafilesChooserDlg(CDatafilesChoice& choice, IFileDialogs& dialogs,
                                           const QString& reason, const QString& start,
                                           QWidget* parent)
    : QDialog(parent), m_choice(choice), m_dialogs(dialogs), m_start(start) {
    setObjectName(QStringLiteral("datafilesChooser"));
    setWindowTitle(tr("Choose a Datafiles Folder"));

    auto* icon = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_DirIcon).pixmap(size, size));
    icon->setAlignment(Qt::AlignTop);
    auto* text = new QLabel(reason, this);
    text->setObjectName(QStringLiteral("reason"));
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* about = new QLabel(tr("A datafiles folder holds an office's clients and standards, "
                                "usually on a shared drive that every workstation reaches. "
                                "Your choice is remembered; File > Open Datafiles Folder... "
                                "changes it later."),
                             this);
    about->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* existing =
        buttons->addButton(tr("&Open Existing Folder..."), QDialogButtonBox::AcceptRole);
    existing->setObjectName(QStringLiteral("openExisting"));
    existing->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
    QPushButton* fresh =
        buttons->addButton(tr("&Create New Datafiles Folder..."), QDialogButtonBox::ActionRole);
    fresh->setObjectName(QStringLiteral("createNew"));
    fresh->setIcon(style()->standardIcon(QStyle::SP_FileDialogNewFolder));
    QPushButton* quit = buttons->addButton(tr("&Quit"), QDialogButtonBox::RejectRole);
    quit->setObjectName(QStringLiteral("quit"));
    // A click on Open or Create picks a folder first; only a usable one closes the chooser.
    disconnect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(existing, &QPushButton::clicked, this, [this] { Choose(EDatafilesPick::Existing); });
    connect(fresh, &QPushButton::clicked, this, [this] { Choose(EDatafilesPick::New); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* texts = new QVBoxLayout;
    texts->addWidget(text);
    texts->addWidget(about);
    auto* top = new QHBoxLayout;
    top->addWidget(icon);
    top->addLayout(texts, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addSpacing(12);
    layout->addWidget(buttons);
    setMinimumWidth(560);
}

QString CDatafilesChooserDlg::Pick(CDatafilesChoice& choice, IFileDialogs& dialogs,
                                   EDatafilesPick pick, const QString& start, QWidget* parent) {
    const QString title =
        pick == EDatafilesPick::New
            ? QApplication::translate("CDatafilesChooserDlg", "Create New Datafiles Folder")
            : QApplication::translate("CDatafilesChooserDlg", "Open Datafiles Folder");
    const QString picked = dialogs.Folder(parent, title, start);
    if (picked.isEmpty())
        return {};
    const std::optional<std::wstring> folder = choice.Accept(W(picked), pick);
    return folder ? Q(*folder) : QString();
}

void CDatafilesChooserDlg::Choose(EDatafilesPick pick) {
    m_folder = Pick(m_choice, m_dialogs, pick, m_start, this);
    if (m_folder.isEmpty())
        return;
    m_choice.Remember(W(m_folder));
    accept();
}
