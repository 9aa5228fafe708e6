#include "gui/StandardDocument.h"

#include "gui/Layout.h"

#include "datafile/Application.h"
#include "gui/BordersFormView.h"
#include "gui/DrawingsFormView.h"
#include "gui/FileLocationsFormView.h"
#include "gui/GeneralSettingsFormView.h"
#include "gui/LayersFormView.h"
#include "gui/LinesFormView.h"
#include "gui/QtText.h"
#include "gui/SettingsFormView.h"
#include "gui/SpecsFormView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QIcon PageIcon(int icon) {
    QStyle* style = QApplication::style();
    return icon >= 6 ? style->standardIcon(QStyle::SP_DirIcon)
                     : style->standardIcon(QStyle::SP_FileDialogDetailedView);
}

// A heading of the page tree: says where its pages are.
CPageView* Placeholder(CStandardsCore& core, IPageHost& host, const QString& title,
                       const QString& what, QWidget* parent) {
    auto* page = new CPageView(core, host, parent);
    page->setObjectName(QStringLiteral("placeholderPage"));
    auto* label =
        new QLabel(QStringLiteral("<h3>%1</h3><p>%2</p>").arg(title.toHtmlEscaped(), what), page);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    label->setWordWrap(true);
    label->setMargin(12);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    return page;
}

} // namespace

CSettingsTreeCtrl::CSettingsTreeCtrl(QWidget* parent) : QTreeWidget(parent) {
    setObjectName(QStringLiteral("settingsTree"));
    setHeaderHidden(true);
}

void CSettingsTreeCtrl::Add(QTreeWidgetItem* parent, const std::vector<SSettingsPage>& pages) {
    for (const auto& page : pages) {
        auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
        item->setText(0, Q(page.title));
        item->setIcon(0, PageIcon(page.icon));
        m_pageOf[item] = &page;
        Add(item, page.children);
    }
}

void CSettingsTreeCtrl::Fill(const std::vector<SSettingsPage>& pages) {
    clear();
    m_pageOf.clear();
    m_pages = pages;
    Add(nullptr, m_pages);
    expandAll();
}

const SSettingsPage* CSettingsTreeCtrl::PageOf(const QTreeWidgetItem* item) const {
    const auto it = m_pageOf.find(item);
    return it == m_pageOf.end() ? nullptr : it->second;
}

QTreeWidgetItem* CSettingsTreeCtrl::FindPage(const QString& title,
                                             const QString& parentTitle) const {
    for (QTreeWidgetItemIterator it(const_cast<CSettingsTreeCtrl*>(this)); *it; ++it) {
        if ((*it)->text(0) != title)
            continue;
        if (parentTitle.isEmpty() || ((*it)->parent() && (*it)->parent()->text(0) == parentTitle))
            return *it;
    }
    return nullptr;
}

CStandardDocument::CStandardDocument(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                                     QWidget* parent)
    : QSplitter(parent), m_core(core), m_host(host), m_standardId(standardId),
      m_tree(new CSettingsTreeCtrl(this)), m_view(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("standardDocument"));
    setWindowTitle(Q(core.projects.GetProjectName(standardId, true, true)));
    m_tree->Fill(SettingsPageTree(false));
    m_view->addWidget(Placeholder(core, host, windowTitle(),
                                  tr("Choose a page of this standard on the left."), m_view));
    setStretchFactor(1, 1);
    setSizes({260, 740});
    layout::KeepSizes(this, QStringLiteral("standard/split"));
    connect(m_tree, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* item) { ShowPage(item); });
}

CPageView* CStandardDocument::MakePage(const SSettingsPage& page) {
    const QString title = Q(page.title);
    switch (page.kind) {
    case ESettingsPage::Section:
        return new CSettingsFormView(m_core, m_host, m_standardId, page.application, page.section,
                                     m_view);
    case ESettingsPage::DrawingFolder:
        return new CDrawingsFormView(m_core, m_host, m_standardId, page.application, m_view);
    case ESettingsPage::General:
        return new CGeneralSettingsFormView(m_core, m_host, m_standardId, m_view);
    case ESettingsPage::FileLocations:
        return new CFileLocationsFormView(m_core, m_host, m_standardId, m_view);
    case ESettingsPage::Borders:
        return new CBordersFormView(m_core, m_host, m_standardId, m_view);
    case ESettingsPage::Lines:
        return new CLinesFormView(m_core, m_host, m_standardId, m_view);
    case ESettingsPage::Specs:
        return new CSpecsFormView(m_core, m_host, m_standardId, m_view);
    case ESettingsPage::Layers:
        return new CLayersFormView(m_core, m_host, m_standardId, page.application, m_view);
    default:
        return Placeholder(m_core, m_host, title, tr("Choose one of the pages below this one."),
                           m_view);
    }
}

CPageView* CStandardDocument::ShowPage(QTreeWidgetItem* item) {
    const SSettingsPage* page = m_tree->PageOf(item);
    if (!page)
        return nullptr;
    auto found = m_made.find(item);
    if (found == m_made.end()) {
        CPageView* widget = MakePage(*page);
        m_view->addWidget(widget);
        found = m_made.emplace(item, widget).first;
    }
    m_view->setCurrentWidget(found->second);
    if (m_tree->currentItem() != item)
        m_tree->setCurrentItem(item);
    return found->second;
}

void CStandardDocument::closeEvent(QCloseEvent* event) {
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
        const auto made = m_made.find(*it);
        if (made != m_made.end() && !made->second->CanClose()) {
            ShowPage(*it);
            event->ignore();
            return;
        }
    }
    event->accept();
}

void CStandardDocument::FilesChanged() {
    for (const auto& [item, page] : m_made)
        page->FilesChanged();
}
