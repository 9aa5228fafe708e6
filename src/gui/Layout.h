// The sizes a user gives the parts of the windows — the navigator's dock,
// the split between a standard's page tree and its page, the comparison's
// label column — kept between runs in the desktop settings of this user
// ("standards-desk-layout.conf" beside the program's registry file).
#pragma once

#include <QByteArray>
#include <QSplitter>
#include <QString>

namespace layout {

// Gives the splitter the sizes kept under `key`, and keeps them again
// whenever it is hidden (its window closed).
void KeepSizes(QSplitter* splitter, const QString& key);

// What is kept under `key`; empty when nothing is.
QByteArray Value(const QString& key);
void SetValue(const QString& key, const QByteArray& value);

// A column width kept under `key`; 0 when the user never set one.
int ColumnWidth(const QString& key);
void SetColumnWidth(const QString& key, int width);

} // namespace layout
