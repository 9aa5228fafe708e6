// The chooser shown when the desktop program has no datafiles folder to work
// on: open an existing folder, set up a new one, or quit.
#pragma once

#include "app/DatafilesChoice.h"
#include "gui/FileDialogs.h"

#include <QDialog>

class CDatafilesChooserDlg : public QDialog {
    Q_OBJECT
public:
    // `reason` says why the chooser is shown; `start` is where the folder
    // dialogs begin.
    CDatafilesChooserDlg(CDatafilesChoice& choice, IFileDialogs& dialogs, const QString& reason,
                         const QString& start, QWidget* parent = nullptr);

    // The accepted folder, remembered as this user's choice.
    const QString& Folder() const { return m_folder; }

    // Picks a folder for `pick` through `dialogs` and checks it; empty when the user cancels or the
    // folder cannot be used. The chooser's buttons and the File menu's commands both come here.
    static QString Pick(CDatafilesChoice& choice, IFileDialogs& dialogs, EDatafilesPick pick,
                        const QString& start, QWidget* parent);

private:
    void Choose(EDatafilesPick pick);

    CDatafilesChoice& m_choice;
    IFileDialogs& m_dialogs;
    QString m_start;
    QString m_folder;
};
