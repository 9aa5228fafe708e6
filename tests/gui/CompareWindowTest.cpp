// The comparison window opened from the navigator: the differences-only
// view and the counts, headings and columns that fit their texts, pickers
// that follow the navigator, and marks that stay readable in light and dark
// palettes (the settings grid's headings as well).
#include "GuiSupport.h"

#include "gui/CompareWindow.h"
#include "gui/Grid.h"
#include "gui/QtText.h"
#include "gui/SettingsFormView.h"
#include "store/GeneralSettings.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyleFactory>

namespace {

QPalette DarkPalette() {
    QPalette palette = QApplication::style()->standardPalette();
    const QColor window(45, 45, 48), base(30, 30, 30), text(220, 220, 220);
    for (const auto role : {QPalette::Window, QPalette::Button, QPalette::AlternateBase})
        palette.setColor(role, window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, base);
    return palette;
}

// The colours a cell is drawn in: its own brushes, else the grid's palette.
std::pair<QColor, QColor> CellColours(const QTableWidget* grid, const QTableWidgetItem* item) {
    const QBrush text = item->foreground();
    const QBrush back = item->background();
    return {text.style() == Qt::NoBrush ? grid->palette().color(QPalette::Text) : text.color(),
            back.style() == Qt::NoBrush ? grid->palette().color(QPalette::Base) : back.color()};
}

bool IsHeading(const QTableWidget* grid, int row) {
    return grid->columnSpan(row, 0) == grid->columnCount();
}

} // namespace

class CompareWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;
    QPalette original;

    void Reopen() {
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->resize(1200, 800);
        frame->show();
    }
    CNavigatorTreeCtrl* Navigator() { return frame->NavigatorPanel()->Tree(); }
    void Select(const QString& name) {
        QTreeWidgetItem* item = ItemAt(Navigator(), {name});
        QVERIFY(item);
        Navigator()->setCurrentItem(item);
    }
    // Compares `first`, chosen in the navigator, with `second`.
    CCompareWindow* Compare(const QString& first, std::int32_t second) {
        Select(first);
        frame->Action(eCmdCompareStandards)->trigger();
        QMdiSubWindow* window = frame->Documents()->activeSubWindow();
        auto* comparison = window ? qobject_cast<CCompareWindow*>(window->widget()) : nullptr;
        if (comparison && second > 0 &&
            !CCompareProjectsFormView::SelectStandard(comparison->Selector()->Lower(), second))
            return nullptr;
        QApplication::processEvents();
        return comparison;
    }
    static QStringList VisibleValueRows(const QTableWidget* grid) {
        QStringList rows;
        for (int row = 0; row < grid->rowCount(); ++row) {
            if (!grid->isRowHidden(row) && !IsHeading(grid, row))
                rows << grid->item(row, 0)->text() + QStringLiteral(" | ") +
                            grid->item(row, 1)->text() + QStringLiteral(" | ") +
                            grid->item(row, 2)->text();
        }
        return rows;
    }
    static QStringList HeadingsWithCounts(const QTableWidget* grid) {
        QStringList headings;
        for (int row = 0; row < grid->rowCount(); ++row) {
            const QString text = IsHeading(grid, row) ? grid->item(row, 0)->text() : QString();
            if (text.endsWith(QLatin1Char(')')))
                headings << text;
        }
        return headings;
    }
    static QStringList TreeTexts(const QTreeWidget* tree) {
        QStringList texts;
        for (QTreeWidgetItemIterator it(const_cast<QTreeWidget*>(tree)); *it; ++it)
            texts << (*it)->text(0);
        return texts;
    }

private slots:
    void initTestCase() { original = QApplication::palette(); }
    void init() {
        world = std::make_unique<SGuiWorld>();
        QCOMPARE(world->CreateStandard(L"Pipe"), 1);
        QCOMPARE(world->CreateStandard(L"Plant"), 2);
        QCOMPARE(world->CreateStandard(L"Imperial", 1), 3);
        Reopen();
    }
    void cleanup() {
        frame.reset();
        world.reset();
        QApplication::setPalette(original);
    }

    void differencesOnlyShowsTheDifferingValuesAndTheCounts() {
        // Plant differs from Pipe in one P&ID setting and one line.
        test::WriteBytes(world->StandardFile(2, L"PID.ini"),
                         "[Settings]\r\nVariable 145 = 3.5\r\n");
        test::WriteBytes(world->StandardFile(2, L"Lines.ini"),
                         "[LineList]\r\nVX2D_LINE_1 = 100-A\r\n");
        CCompareWindow* window = Compare(QStringLiteral("Pipe"), 2);
        QVERIFY(window);
        QTableWidget* grid = window->Result()->Grid();
        auto* only = window->findChild<QCheckBox*>(QStringLiteral("differencesOnly"));
        auto* count = window->findChild<QLabel*>(QStringLiteral("differenceCount"));
        QVERIFY(only && count);
        QVERIFY(!only->isChecked());
        QCOMPARE(count->text(), QStringLiteral("2 differences"));
        QCOMPARE(HeadingsWithCounts(grid),
                 (QStringList{QStringLiteral("Lines (1 difference)"),
                              QStringLiteral("P&ID - General Drawing Parameters (1 difference)")}));
        const QStringList everything = VisibleValueRows(grid);
        QVERIFY(everything.size() > 100);
        QVERIFY(everything.contains(QStringLiteral("Working Units | Metric | Metric")));

        only->click();
        QCOMPARE(VisibleValueRows(grid), (QStringList{QStringLiteral("100-A |  | checked"),
                                                      QStringLiteral("Text Height | 2.5 | 3.5")}));
        int headings = 0;
        for (int row = 0; row < grid->rowCount(); ++row)
            headings += IsHeading(grid, row) && !grid->isRowHidden(row) ? 1 : 0;
        QVERIFY(headings > 10); // every heading stays, as in the saved report

        // The report saves what the window shows.
        const QString report = Q(world->config.File(L"report.html"));
        world->dialogs.answers = {{report}};
        window->findChild<QPushButton*>(QStringLiteral("reportButton"))->click();
        const std::string html = test::ReadBytes(test::P(W(report)));
        QVERIFY(html.find("<td>Text Height</td>") != std::string::npos);
        QVERIFY(html.find("<td>Working Units</td>") == std::string::npos);

        // Comparing a standard with itself leaves nothing to show.
        QVERIFY(CCompareProjectsFormView::SelectStandard(window->Selector()->Lower(), 1));
        QCOMPARE(count->text(), QStringLiteral("No differences"));
        QVERIFY(VisibleValueRows(grid).isEmpty());
        QVERIFY(HeadingsWithCounts(grid).isEmpty());
        only->click();
        for (int row = 0; row < grid->rowCount(); ++row)
            QVERIFY(!grid->isRowHidden(row));
    }

    void copiedRowsReachTheOtherStandardAndUndoPutsThemBack() {
        test::WriteBytes(world->StandardFile(2, L"PID.ini"),
                         "[Settings]\r\nVariable 145 = 3.5\r\n");
        test::WriteBytes(world->StandardFile(2, L"Lines.ini"),
                         "[LineList]\r\nVX2D_LINE_1 = 100-A\r\n");
        // Plant's P&ID page is open meanwhile and follows what is copied.
        auto* page = qobject_cast<CSettingsFormView*>(OpenStandardPage(
            *frame, {QStringLiteral("Plant")},
            {QStringLiteral("P&ID Settings"), QStringLiteral("General Drawing Parameters")}));
        QVERIFY(page);
        auto textHeight = [page] {
            for (const auto& row : page->Editor().Rows()) {
                if (row.variableId == 145)
                    return row.text;
            }
            return std::wstring();
        };
        QCOMPARE(textHeight(), std::wstring(L"3.5"));

        CCompareWindow* window = Compare(QStringLiteral("Pipe"), 2);
        QVERIFY(window);
        CCompareSettingsFormView* result = window->Result();
        QTableWidget* grid = result->Grid();
        window->findChild<QCheckBox*>(QStringLiteral("differencesOnly"))->click();
        QVERIFY(!result->CopyToRight()->isEnabled()); // nothing chosen yet
        auto rowOf = [grid](const QString& label) {
            for (int row = 0; row < grid->rowCount(); ++row) {
                if (!grid->isRowHidden(row) && grid->item(row, 0)->text().startsWith(label))
                    return row;
            }
            return -1;
        };
        grid->selectRow(rowOf(QStringLiteral("Text Height")));
        QVERIFY(result->CopyToRight()->isEnabled());
        QCOMPARE(result->CopyToRight()->text(), QStringLiteral("Copy to 'Plant'"));
        QCOMPARE(result->CopyToLeft()->text(), QStringLiteral("Copy to 'Pipe'"));
        QVERIFY(!frame->UndoAction()->isEnabled());

        result->CopyToRight()->trigger();
        QVERIFY(test::ReadBytes(world->StandardFile(2, L"PID.ini")).find("Variable 145 = 2.5") !=
                std::string::npos);
        QCOMPARE(VisibleValueRows(grid), QStringList{QStringLiteral("100-A |  | checked")});
        QCOMPARE(textHeight(), std::wstring(L"2.5"));
        QVERIFY(frame->UndoAction()->isEnabled());
        QCOMPARE(frame->UndoAction()->text(), QStringLiteral("&Undo Copy to 'Plant'"));

        frame->UndoAction()->trigger();
        QCOMPARE(textHeight(), std::wstring(L"3.5"));
        QCOMPARE(VisibleValueRows(grid), (QStringList{QStringLiteral("100-A |  | checked"),
                                                      QStringLiteral("Text Height | 2.5 | 3.5")}));
        QVERIFY(!frame->UndoAction()->isEnabled());

        // A section heading stands for its rows: Plant's line comes to Pipe.
        grid->clearSelection();
        grid->selectRow(rowOf(QStringLiteral("Lines")));
        result->CopyToLeft()->trigger();
        QVERIFY(test::ReadBytes(world->StandardFile(1, L"Lines.ini")).find("= 100-A") !=
                std::string::npos);
        QCOMPARE(VisibleValueRows(grid), QStringList{QStringLiteral("Text Height | 2.5 | 3.5")});
        QVERIFY(world->prompter.asked.empty());
    }

    void headingsLabelsAndLongValuesFitOrSayThemselves() {
        const QString longPath =
            QStringLiteral("/srv/projects/northwind/refinery/area-200/isometric/") +
            QString(60, QLatin1Char('x')) + QStringLiteral("/drawings");
        CVX2D_GeneralSettings general;
        QVERIFY(general.Load(world->core.projects, 3));
        general.m_strIsoDrawings = W(longPath);
        QVERIFY(general.Save());
        frame->resize(1900, 800); // room for the longest label
        CCompareWindow* window = Compare(QStringLiteral("Pipe"), 3);
        QVERIFY(window);
        QTableWidget* grid = window->Result()->Grid();
        QTRY_COMPARE(grid->horizontalScrollBar()->maximum(), 0);

        int headings = 0, longest = 0;
        for (int row = 0; row < grid->rowCount(); ++row) {
            const QTableWidgetItem* label = grid->item(row, 0);
            const QFontMetrics metrics(label->font());
            const int needed = metrics.horizontalAdvance(label->text());
            if (IsHeading(grid, row)) {
                ++headings;
                const QRect rect = grid->visualRect(grid->model()->index(row, 0));
                QVERIFY2(rect.width() > needed, qPrintable(label->text()));
            } else {
                longest = std::max(longest, needed);
                for (int column = 0; column < 3; ++column) {
                    const QTableWidgetItem* cell = grid->item(row, column);
                    QCOMPARE(cell->toolTip(), cell->text());
                }
            }
        }
        QVERIFY(headings > 20);
        QVERIFY2(grid->columnWidth(0) > longest,
                 qPrintable(QStringLiteral("%1 <= %2").arg(grid->columnWidth(0)).arg(longest)));
        // The value columns share what is left.
        QVERIFY(std::abs(grid->columnWidth(1) - grid->columnWidth(2)) <= 1);
        QVERIFY(grid->columnWidth(1) > grid->columnWidth(0) / 2);
        QCOMPARE(grid->horizontalHeaderItem(2)->toolTip(), QStringLiteral("Imperial"));

        // A narrower window caps the label column at two fifths; what is cut
        // short is in the tooltips.
        frame->resize(1000, 600);
        QTRY_VERIFY(grid->columnWidth(0) < longest);
        QVERIFY(std::abs(grid->columnWidth(0) - grid->viewport()->width() * 2 / 5) <= 1);
        QVERIFY(std::abs(grid->columnWidth(1) - grid->columnWidth(2)) <= 1);
        QTRY_COMPARE(grid->horizontalScrollBar()->maximum(), 0);
    }

    void thePickersFollowCopiesAndRenamesInTheNavigator() {
        CCompareWindow* window = Compare(QStringLiteral("Pipe"), 3);
        QVERIFY(window);
        QTreeWidget* upper = window->Selector()->Upper();
        QTreeWidget* lower = window->Selector()->Lower();
        QTableWidget* grid = window->Result()->Grid();
        const int rows = grid->rowCount();
        QVERIFY(rows > 0);

        Select(QStringLiteral("Pipe"));
        frame->Action(eCmdCopyStandard)->trigger();
        const QString copy = Q(world->core.projects.GetProjectName(4, true, false));
        QVERIFY(!copy.isEmpty());
        for (QTreeWidget* tree : {upper, lower})
            QVERIFY2(TreeTexts(tree).contains(copy), qPrintable(TreeTexts(tree).join(u',')));
        QCOMPARE(CCompareProjectsFormView::IdOf(upper->currentItem()), 1);
        QCOMPARE(CCompareProjectsFormView::IdOf(lower->currentItem()), 3);
        QCOMPARE(grid->rowCount(), rows);

        Select(QStringLiteral("Imperial"));
        frame->Action(eCmdRenameStandard)->trigger();
        auto* editor = Navigator()->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->setText(QStringLiteral("Imperial Plant"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(TreeTexts(lower).contains(QStringLiteral("Imperial Plant")));
        QVERIFY(!TreeTexts(upper).contains(QStringLiteral("Imperial")));
        QCOMPARE(lower->currentItem()->text(0), QStringLiteral("Imperial Plant"));
        QCOMPARE(grid->horizontalHeaderItem(2)->text(), QStringLiteral("Imperial Plant"));
        QCOMPARE(grid->rowCount(), rows);
    }

    void marksStayReadableInLightAndDarkPalettes_data() {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << QApplication::style()->standardPalette();
        QTest::newRow("dark") << DarkPalette();
    }
    void marksStayReadableInLightAndDarkPalettes() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        Reopen();
        CCompareWindow* window = Compare(QStringLiteral("Pipe"), 3);
        QVERIFY(window);
        QTableWidget* grid = window->Result()->Grid();
        const QColor base = palette.color(QPalette::Base);
        std::set<QRgb> backgrounds;
        int marked = 0;
        for (int row = 0; row < grid->rowCount(); ++row) {
            for (int column = 0; column < 3; ++column) {
                const QTableWidgetItem* cell = grid->item(row, column);
                if (!cell || cell->background().style() == Qt::NoBrush)
                    continue;
                ++marked;
                const auto [text, back] = CellColours(grid, cell);
                backgrounds.insert(back.rgb());
                // A mark keeps to the theme: nearer its base than its text.
                QVERIFY(ContrastRatio(back, base) < ContrastRatio(back, text));
                QVERIFY2(ContrastRatio(text, back) >= kReadableContrast,
                         qPrintable(QStringLiteral("%1: %2 on %3")
                                        .arg(cell->text(), text.name(), back.name())));
            }
        }
        QVERIFY(marked > 50);
        // Headings, sub-headings and differences each look different, and
        // none like an ordinary cell.
        QCOMPARE(backgrounds.size(), std::size_t{3});
        QVERIFY(!backgrounds.contains(base.rgb()));

        auto* page = qobject_cast<CSettingsFormView*>(OpenStandardPage(
            *frame, {QStringLiteral("Pipe")},
            {QStringLiteral("P&ID Settings"), QStringLiteral("Dimensioning Variables")}));
        QVERIFY(page);
        int headings = 0;
        for (int row = 0; row < page->Grid()->rowCount(); ++row) {
            const QTableWidgetItem* label = page->Grid()->item(row, 0);
            if (label->background().style() == Qt::NoBrush)
                continue;
            ++headings;
            const auto [text, back] = CellColours(page->Grid(), label);
            QVERIFY(back != base);
            QVERIFY2(ContrastRatio(text, back) >= kReadableContrast, qPrintable(label->text()));
        }
        QVERIFY(headings > 0);
    }

    void contrastRatios() {
        const std::tuple<QColor, QColor, double> cases[] = {
            {Qt::black, Qt::white, 21.0},
            {Qt::white, Qt::black, 21.0},
            {QColor(118, 118, 118), Qt::white, 4.54},
            {QColor(30, 30, 30), QColor(30, 30, 30), 1.0},
            {QColor(255, 255, 0), Qt::black, 19.56},
        };
        for (const auto& [one, two, ratio] : cases)
            QVERIFY2(std::abs(ContrastRatio(one, two) - ratio) < 0.01,
                     qPrintable(QString::number(ContrastRatio(one, two))));
        // A blend goes only as far as the text on it stays readable.
        const QColor dark(30, 30, 30), light(220, 220, 220);
        const QColor blend = ReadableBlend(dark, QColor(255, 255, 0), 1.0, light);
        QVERIFY(ContrastRatio(blend, light) >= kReadableContrast);
        QVERIFY(blend.red() > dark.red() + 20 && blend.blue() <= dark.blue());
        QCOMPARE(ReadableBlend(Qt::white, Qt::black, 0.3, Qt::black), QColor(179, 179, 179));
        // Towards the text colour itself it stops short, near the limit.
        const double limit =
            ContrastRatio(ReadableBlend(Qt::white, Qt::black, 1.0, Qt::black), Qt::black);
        QVERIFY2(limit >= kReadableContrast && limit < kReadableContrast + 1,
                 qPrintable(QString::number(limit)));
        // Nothing readable: no tint at all.
        QCOMPARE(
            ReadableBlend(QColor(128, 128, 128), QColor(140, 140, 140), 1.0, QColor(128, 128, 128)),
            QColor(128, 128, 128));
    }
};

QTEST_MAIN(CompareWindowTest)
#include "CompareWindowTest.moc"
