#include "gui/CompareWindow.h"

#include "gui/MainFrame.h"

#include <QLabel>

CCompareWindow::CCompareWindow(CDeskCore& core, CMainFrame& frame, std::int32_t, QWidget* parent)
    : QSplitter(parent), m_core(core), m_frame(frame) {
    setObjectName(QStringLiteral("compareWindow"));
    setWindowTitle(tr("Compare Standards"));
    addWidget(new QLabel(tr("Comparison"), this));
}
