// A page of a standard's window: an editor with "Apply" that may hold unsaved
// changes when its window closes.
#pragma once

#include <QWidget>

class CPageView : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    // The window is closing: a modified page asks whether to save (Yes saves,
    // No discards). False keeps the window open.
    virtual bool CanClose() { return true; }
};
