// The file dialogs the commands need, behind an interface so that tests can
// answer them.
#pragma once

#include <QStringList>
#include <QWidget>

class IFileDialogs {
public:
    virtual ~IFileDialogs() = default;
    // The chosen file, or an empty string when the user cancels. Asks before
    // overwriting an existing file.
    virtual QString SaveFile(QWidget* parent, const QString& title, const QString& filter,
                             const QString& proposed) = 0;
    // The chosen files in their order; empty when the user cancels.
    virtual QStringList OpenFiles(QWidget* parent, const QString& title, const QString& filter,
                                  const QString& folder) = 0;
    // A folder, or an empty string.
    virtual QString Folder(QWidget* parent, const QString& title, const QString& start) = 0;
};

class CQtFileDialogs : public IFileDialogs {
public:
    QString SaveFile(QWidget* parent, const QString& title, const QString& filter,
                     const QString& proposed) override;
    QStringList OpenFiles(QWidget* parent, const QString& title, const QString& filter,
                          const QString& folder) override;
    QString Folder(QWidget* parent, const QString& title, const QString& start) override;

    // "Name (*.a;*.b)|*.a;*.b|" filters as Qt writes them: "Name (*.a *.b)".
    static QString QtFilter(const QString& filter);
    // The suffix a save dialog adds to a name typed without one: the filter's
    // own type ("html" for reports, "xst" for archives); none for "*.*".
    static QString DefaultSuffix(const QString& filter);
};
