#include "gui/StandardDocument.h"

#include "gui/MainFrame.h"
#include "gui/QtText.h"

#include <QLabel>

CStandardDocument::CStandardDocument(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                                     QWidget* parent)
    : QSplitter(parent), m_core(core), m_frame(frame), m_standardId(standardId),
      m_pages(new QTreeWidget(this)), m_view(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("standardDocument"));
    setWindowTitle(Q(core.projects.GetProjectName(standardId, true, true)));
    m_pages->setObjectName(QStringLiteral("settingsTree"));
    m_pages->setHeaderHidden(true);
    m_view->addWidget(new QLabel(tr("Choose a page on the left."), m_view));
    setStretchFactor(1, 1);
}
