#include "gui/Layout.h"

#include <QEvent>
#include <QSettings>

namespace {

QSettings Settings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("VANDIX"),
                     QStringLiteral("standards-desk-layout"));
}

// Keeps a splitter's sizes when it is hidden.
class CSizesKeeper : public QObject {
public:
    CSizesKeeper(QSplitter* splitter, QString key) : QObject(splitter), m_key(std::move(key)) {
        splitter->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Hide)
            layout::SetValue(m_key, static_cast<QSplitter*>(watched)->saveState());
        return false;
    }

private:
    QString m_key;
};

} // namespace

namespace layout {

void KeepSizes(QSplitter* splitter, const QString& key) {
    const QByteArray state = Value(key);
    if (!state.isEmpty())
        splitter->restoreState(state);
    new CSizesKeeper(splitter, key);
}

QByteArray Value(const QString& key) {
    return Settings().value(key).toByteArray();
}

void SetValue(const QString& key, const QByteArray& value) {
    Settings().setValue(key, value);
}

int ColumnWidth(const QString& key) {
    return Settings().value(key, 0).toInt();
}

void SetColumnWidth(const QString& key, int width) {
    Settings().setValue(key, width);
}

} // namespace layout
