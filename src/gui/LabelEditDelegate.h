// Hands a finished or cancelled label edit to its owner instead of writing
// it into the item: the owner decides what the label becomes. The owner hears
// of it after the editor has closed, so it may rebuild the view.
#pragma once

#include <QLineEdit>
#include <QStyledItemDelegate>
#include <functional>
#include <optional>

class CLabelEditDelegate : public QStyledItemDelegate {
public:
    // `ended(label, text)`: the label the edit began on, and the typed text
    // (none when the edit was cancelled).
    using FEnded = std::function<void(const QString&, const std::optional<QString>&)>;

    CLabelEditDelegate(QObject* parent, FEnded ended)
        : QStyledItemDelegate(parent), m_ended(std::move(ended)) {
        connect(this, &QAbstractItemDelegate::closeEditor, this,
                [this](QWidget*, QAbstractItemDelegate::EndEditHint hint) {
                    if (hint == QAbstractItemDelegate::RevertModelCache && !m_committed)
                        m_ended(m_label, std::nullopt);
                    m_committed = false;
                });
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        m_label = index.data().toString();
        return QStyledItemDelegate::createEditor(parent, option, index);
    }
    void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex&) const override {
        m_committed = true;
        const QString text = static_cast<QLineEdit*>(editor)->text();
        QMetaObject::invokeMethod(
            const_cast<CLabelEditDelegate*>(this),
            [this, label = m_label, text] { m_ended(label, text); }, Qt::QueuedConnection);
    }

private:
    FEnded m_ended;
    mutable QString m_label;
    mutable bool m_committed = false;
};
