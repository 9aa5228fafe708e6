// The window of an opened standard: its page tree on the left and the chosen
// page on the right.
#pragma once

#include "gui/DeskCore.h"

#include <QSplitter>
#include <QStackedWidget>
#include <QTreeWidget>

class CMainFrame;

class CStandardDocument : public QSplitter {
    Q_OBJECT
public:
    CStandardDocument(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                      QWidget* parent = nullptr);
    std::int32_t StandardId() const { return m_standardId; }

private:
    CDeskCore& m_core;
    CMainFrame& m_frame;
    std::int32_t m_standardId;
    QTreeWidget* m_pages;
    QStackedWidget* m_view;
};
