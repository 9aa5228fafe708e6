// The comparison of two standards: two stacked pickers and the grid.
#pragma once

#include "gui/DeskCore.h"

#include <QSplitter>

class CMainFrame;

class CCompareWindow : public QSplitter {
    Q_OBJECT
public:
    CCompareWindow(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                   QWidget* parent = nullptr);

private:
    CDeskCore& m_core;
    CMainFrame& m_frame;
};
