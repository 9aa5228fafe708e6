// The windows of a standard and of a comparison: settings pages, the
// drawings list, and the comparison grid, driven through their widgets.
#include "GuiSupport.h"

#include "gui/CompareWindow.h"
#include "gui/DrawingsFormView.h"
#include "gui/MainFrame.h"
#include "gui/NavigatorDlg.h"
#include "gui/PageView.h"
#include "gui/QtText.h"
#include "gui/SettingsFormView.h"
#include "gui/StandardDocument.h"
#include "store/GeneralSettings.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QMdiSubWindow>

namespace fs = std::filesystem;

class ViewsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;

    std::int32_t Create(const wchar_t* name, int units = 0) {
        const std::int32_t id = world->CreateStandard(name, units);
        [&] { QVERIFY(id > 0); }();
        return id;
    }
    std::wstring Folder(std::int32_t id) { return world->core.projects.StandardFile(id, L""); }
    CStandardDocument* Open(std::int32_t id) {
        frame->OpenStandard(id);
        return qobject_cast<CStandardDocument*>(frame->Documents()->activeSubWindow()->widget());
    }
    template <typename View>
    View* Page(CStandardDocument* document, const QString& title, const QString& parent) {
        QTreeWidgetItem* item = document->Pages()->FindPage(title, parent);
        return item ? qobject_cast<View*>(document->ShowPage(item)) : nullptr;
    }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->resize(1200, 800);
        frame->show();
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void applyWritesTheChangedCellsAndClosingAsks() {
        const std::int32_t id = Create(L"Pipe");
        CStandardDocument* document = Open(id);
        QVERIFY(document);
        auto* general =
            Page<CSettingsFormView>(document, QStringLiteral("General Drawing Parameters"),
                                    QStringLiteral("P&ID Settings"));
        QVERIFY(general);
        auto* apply = general->findChild<QPushButton*>(QStringLiteral("applyButton"));
        QVERIFY(!apply->isEnabled());
        QTableWidget* grid = general->Grid();
        QCOMPARE(grid->item(3, 0)->text(), QStringLiteral("Text Height"));
        grid->item(3, 1)->setText(QStringLiteral("3.5"));
        QVERIFY(apply->isEnabled());

        auto* bom = Page<CSettingsFormView>(document, QStringLiteral("Bill of Material"),
                                            QStringLiteral("P&ID Settings"));
        QVERIFY(bom);
        // The drop-down opens on the cell and Enter takes its choice.
        bom->Grid()->setCurrentCell(1, 1);
        QTest::keyClick(bom->Grid(), Qt::Key_F2);
        auto* combo = bom->Grid()->findChild<QComboBox*>(QStringLiteral("cellEditor"));
        QVERIFY(combo);
        combo->setCurrentText(QStringLiteral("Bottom Left"));
        QTest::keyClick(combo, Qt::Key_Return);
        QTRY_COMPARE(bom->Grid()->item(1, 1)->text(), QStringLiteral("Bottom Left"));

        apply->click();
        QVERIFY(!apply->isEnabled());
        QCOMPARE(test::ReadBytes(test::P(Folder(id) + L"PID.ini")),
                 std::string("[Settings]\r\nVariable 145 = 3.500000\r\n"));

        // The BOM page is still modified: closing the standard asks first.
        world->prompter.answers = {EPromptAnswer::Yes};
        frame->Documents()->activeSubWindow()->close();
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QVERIFY(world->prompter.asked[0].text.find(L"Pipe") != std::wstring::npos);
        const std::string saved = test::ReadBytes(test::P(Folder(id) + L"PID.ini"));
        QVERIFY(saved.find("Variable 145 = 3.500000") != std::string::npos);
        QCOMPARE(std::count(saved.begin(), saved.end(), '\n'), 3L); // one key for each changed cell
    }

    void theComparisonMarksADifferingValueYellow() {
        const std::int32_t metric = Create(L"Metric");
        const std::int32_t english = Create(L"English", 1);
        frame->OpenComparison(metric);
        auto* window =
            qobject_cast<CCompareWindow*>(frame->Documents()->activeSubWindow()->widget());
        QVERIFY(window);
        QVERIFY(CCompareProjectsFormView::SelectStandard(window->Selector()->Lower(), english));
        QTableWidget* grid = window->Result()->Grid();
        QCOMPARE(grid->horizontalHeaderItem(1)->text(), QStringLiteral("Metric"));
        QCOMPARE(grid->horizontalHeaderItem(2)->text(), QStringLiteral("English"));
        int yellow = 0;
        int units = -1;
        for (int row = 0; row < grid->rowCount(); ++row) {
            if (grid->item(row, 1)->background().color() == QColor(255, 255, 0))
                ++yellow;
            if (grid->item(row, 0)->text() == QStringLiteral("Working Units"))
                units = row;
        }
        QVERIFY(units >= 0);
        QCOMPARE(grid->item(units, 1)->text(), QStringLiteral("Metric"));
        QCOMPARE(grid->item(units, 2)->background().color(), QColor(255, 255, 0));
        QVERIFY(yellow > 10);

        QVERIFY(CCompareProjectsFormView::SelectStandard(window->Selector()->Lower(), metric));
        for (int row = 0; row < grid->rowCount(); ++row)
            QVERIFY(grid->item(row, 1)->background().color() != QColor(255, 255, 0));
    }

    void theDrawingsListCopiesAndMakesDrawings() {
        const std::int32_t id = Create(L"Pipe");
        const fs::path drawings = world->folder.Dir().Path() / "Drawings";
        const fs::path templates = world->folder.Dir().Path() / "Templates";
        test::WriteBytes(drawings / "Pump.dwg", "pump");
        test::WriteBytes(templates / "pid-a1.dwt", "template");
        CVX2D_GeneralSettings general;
        QVERIFY(general.Load(world->core.projects, id));
        general.SetDrawingsLocation(2, W(QString::fromStdString(drawings.string())));
        general.m_strTemplatesLocation = W(QString::fromStdString(templates.string() + "/"));
        QVERIFY(general.Save());
        test::WriteBytes(test::P(Folder(id) + L"PID.ini"),
                         "[Settings]\r\nVariable 044 = pid-a1\r\n");

        CStandardDocument* document = Open(id);
        auto* view =
            Page<CDrawingsFormView>(document, QStringLiteral("PID"), QStringLiteral("Drawings"));
        QVERIFY(view);
        QCOMPARE(view->List()->topLevelItemCount(), 1);
        view->List()->setCurrentItem(view->List()->topLevelItem(0));
        view->List()->topLevelItem(0)->setSelected(true);
        view->Action(QStringLiteral("copy"))->trigger();
        QVERIFY(fs::exists(drawings / "Pump (Copy 1).dwg"));
        view->Action(QStringLiteral("newDrawing"))->trigger();
        QCOMPARE(test::ReadBytes(drawings / "Drawing1.dwg"), std::string("template"));
        QCOMPARE(view->List()->topLevelItemCount(), 3);
        QCOMPARE(view->List()->currentItem()->text(0), QStringLiteral("Drawing1"));

        // The new drawing's label is open for its name; what is typed there
        // renames the file and the list shows the new name.
        auto* editor = view->List()->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->setText(QStringLiteral("Feed"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(fs::exists(drawings / "Feed.dwg"));
        QVERIFY(!fs::exists(drawings / "Drawing1.dwg"));
        QVERIFY(view->List()->currentItem());
        QCOMPARE(view->List()->currentItem()->text(0), QStringLiteral("Feed.dwg"));

        // Its help topic, from the installed help.
        const std::wstring help = world->InstallHelpPage(L"Drawings_Dialog_Box.htm");
        std::vector<std::wstring> opened;
        frame->SetOpener([&](const std::wstring& page) {
            opened.push_back(page);
            return true;
        });
        QVERIFY(view->Action(QStringLiteral("help")));
        view->Action(QStringLiteral("help"))->trigger();
        QCOMPARE(opened, std::vector<std::wstring>{help});
    }

    void everySaveDialogProposesItsOwnType() {
        const std::pair<QString, QString> cases[] = {
            {QStringLiteral("Comparison Reports (*.html)|*.html|"), QStringLiteral("html")},
            {QStringLiteral("Exported Standards (*.xst)|*.xst|"), QStringLiteral("xst")},
            {QStringLiteral("Exported Files (*.xst;*.xpj)|*.xst;*.xpj||"), QStringLiteral("xst")},
            {QStringLiteral("All Files (*.*)|*.*|"), QString()},
            {QStringLiteral("All Files (*)|*|"), QString()},
            {QString(), QString()},
        };
        for (const auto& [filter, suffix] : cases)
            QCOMPARE(CQtFileDialogs::DefaultSuffix(filter), suffix);
    }

    void everyPageOfAStandardHasItsEditor() {
        CStandardDocument* document = Open(Create(L"Pipe"));
        for (QTreeWidgetItemIterator it(document->Pages()); *it; ++it) {
            CPageView* page = document->ShowPage(*it);
            QVERIFY(page);
            // Only the application and "Drawings" headings lead on to other pages.
            QCOMPARE(page->objectName() == QStringLiteral("placeholderPage"),
                     (*it)->childCount() > 0);
        }
    }
};

QTEST_MAIN(ViewsTest)
#include "ViewsTest.moc"
