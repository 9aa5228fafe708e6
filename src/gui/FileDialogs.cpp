#include "gui/FileDialogs.h"

#include <QFileDialog>

QString CQtFileDialogs::QtFilter(const QString& filter) {
    // Pairs of "text|pattern"; Qt shows the text and takes blank-separated patterns.
    const QStringList parts = filter.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString text = parts[i];
        const QString patterns = QString(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' '));
        const int open = text.indexOf(QLatin1Char('('));
        if (open >= 0)
            text = text.left(open).trimmed();
        filters << QStringLiteral("%1 (%2)").arg(text, patterns);
    }
    return filters.join(QStringLiteral(";;"));
}

QString CQtFileDialogs::DefaultSuffix(const QString& filter) {
    // The first pattern of the first pair: "Reports (*.html)|*.html|" gives "html".
    const QStringList parts = filter.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    if (parts.size() < 2)
        return {};
    const QString pattern = parts[1].split(QLatin1Char(';')).front().trimmed();
    return pattern.startsWith(QLatin1String("*.")) && pattern.indexOf(QLatin1Char('*'), 2) < 0
               ? pattern.mid(2)
               : QString();
}

QString CQtFileDialogs::SaveFile(QWidget* parent, const QString& title, const QString& filter,
                                 const QString& proposed) {
    QFileDialog dialog(parent, title, proposed, QtFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(DefaultSuffix(filter));
    dialog.selectFile(proposed);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().front();
}

QStringList CQtFileDialogs::OpenFiles(QWidget* parent, const QString& title, const QString& filter,
                                      const QString& folder) {
    return QFileDialog::getOpenFileNames(parent, title, folder, QtFilter(filter));
}

QString CQtFileDialogs::Folder(QWidget* parent, const QString& title, const QString& start) {
    return QFileDialog::getExistingDirectory(parent, title, start);
}
