// A settings page used from the keyboard as a spreadsheet: the current cell
// is framed and stays in the value column, arrows and Tab move it, Enter and
// F2 edit, Enter ends an edit and moves down, Esc cancels; no cell holds a
// widget of its own, and an empty folder cell is a field with a browse button.
#include "GuiSupport.h"

#include "gui/SettingsFormView.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

// The row whose label is `label`; -1 when there is none.
int Row(const QTableWidget* grid, const QString& label) {
    for (int row = 0; row < grid->rowCount(); ++row) {
        if (grid->item(row, 0)->text() == label)
            return row;
    }
    return -1;
}

// The editor open on the grid, of the type expected; nullptr when none is.
template <typename T> T* Editor(const QTableWidget* grid) {
    auto* editor = grid->findChild<T*>(QStringLiteral("cellEditor"));
    return editor && editor->isVisible() ? editor : nullptr;
}

} // namespace

class SettingsGridTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;

    // A P&ID settings page of "Pipe", its grid focused.
    CSettingsGridCtrl* OpenGrid(const QString& page) {
        auto* view = qobject_cast<CSettingsFormView*>(OpenStandardPage(
            *frame, {QStringLiteral("Pipe")}, {QStringLiteral("P&ID Settings"), page}));
        if (!view)
            return nullptr;
        view->Grid()->setFocus();
        return QTest::qWaitFor([&] { return view->Grid()->hasFocus(); }) ? view->Grid() : nullptr;
    }
    static void Press(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(widget, key, modifiers);
    }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        std::int32_t id = 0;
        QCOMPARE(world->core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
        frame = ShowActiveFrame(*world, QSize(1100, 800));
        QVERIFY(frame);
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void theCurrentCellIsFramedAndKeysMoveItDownTheValues() {
        CSettingsGridCtrl* grid = OpenGrid(QStringLiteral("General Drawing Parameters"));
        QVERIFY(grid);
        for (int row = 0; row < grid->rowCount(); ++row)
            QVERIFY2(!grid->cellWidget(row, 1), qPrintable(grid->item(row, 0)->text()));
        QCOMPARE(grid->currentRow(), 0);
        QCOMPARE(grid->currentColumn(), 1);
        // The key, and the row it leaves current (always in the value column).
        const std::pair<Qt::Key, int> moves[] = {
            {Qt::Key_Down, 1}, {Qt::Key_Down, 2}, {Qt::Key_Left, 2},    {Qt::Key_Right, 2},
            {Qt::Key_Tab, 3},  {Qt::Key_Up, 2},   {Qt::Key_Backtab, 1}, {Qt::Key_Down, 2},
        };
        for (const auto& [key, row] : moves) {
            Press(grid, key);
            QCOMPARE(grid->currentRow(), row);
            QCOMPARE(grid->currentColumn(), 1);
            QCOMPARE(QApplication::focusWidget(), grid);
        }
        // A click on a label chooses its value.
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(grid->item(5, 0)).center());
        QCOMPARE(grid->currentRow(), 5);
        QCOMPARE(grid->currentColumn(), 1);

        // The current cell has a frame along its top, another cell has not;
        // the text cell (5) and the font cell (1), which is only picked.
        for (const int current : {5, 1}) {
            grid->setCurrentCell(current, 1);
            const QImage shot = grid->viewport()->grab().toImage();
            const auto framed = [&](int row) {
                const QRect cell = grid->visualRect(grid->model()->index(row, 1));
                const int x = cell.center().x();
                return shot.pixelColor(x, cell.top() + 1) != shot.pixelColor(x, cell.top() + 5);
            };
            QVERIFY(framed(current));
            QVERIFY(!framed(current + 1));
        }
    }

    void enterAndF2EditEnterMovesDownAndEscCancels() {
        CSettingsGridCtrl* grid = OpenGrid(QStringLiteral("General Drawing Parameters"));
        QVERIFY(grid);
        const int row = Row(grid, QStringLiteral("Text Height"));
        QVERIFY(row >= 0);
        // The key that starts the edit, what is typed, the key that ends it,
        // the cell's text after, and the row current after.
        struct SCase {
            Qt::Key start;
            QString typed;
            Qt::Key end;
            QString shown;
            int current;
        };
        const SCase cases[] = {
            {Qt::Key_F2, QStringLiteral("3.5"), Qt::Key_Return, QStringLiteral("3.5"), row + 1},
            {Qt::Key_Return, QStringLiteral("4"), Qt::Key_Escape, QStringLiteral("3.5"), row},
            {Qt::Key_Return, QStringLiteral("4.5"), Qt::Key_Enter, QStringLiteral("4.5"), row + 1},
        };
        for (const SCase& c : cases) {
            grid->setCurrentCell(row, 1);
            Press(grid, c.start);
            QLineEdit* editor = nullptr;
            QTRY_VERIFY((editor = Editor<QLineEdit>(grid)));
            editor->selectAll();
            QTest::keyClicks(editor, c.typed);
            Press(editor, c.end);
            QTRY_VERIFY(!Editor<QLineEdit>(grid));
            QCOMPARE(grid->item(row, 1)->text(), c.shown);
            QCOMPARE(grid->currentRow(), c.current);
            QCOMPARE(grid->currentColumn(), 1);
            QTRY_COMPARE(QApplication::focusWidget(), grid);
        }
        auto* apply = grid->parentWidget()->findChild<QPushButton*>(QStringLiteral("applyButton"));
        QVERIFY(apply && apply->isEnabled());
        apply->click();
        const std::string saved = test::ReadBytes(world->StandardFile(1, L"PID.ini"));
        QVERIFY2(saved.find("Variable 145 = 4.500000") != std::string::npos, saved.c_str());
    }

    void aDropDownOpensWithEnterAndTakesTheChoiceWithEnter() {
        CSettingsGridCtrl* grid = OpenGrid(QStringLiteral("System Toggles"));
        QVERIFY(grid);
        const int row = Row(grid, QStringLiteral("Valve Tagging Option"));
        QVERIFY(row >= 0);
        const QString before = grid->item(row, 1)->text();
        grid->setCurrentCell(row, 1);
        Press(grid, Qt::Key_Return);
        QComboBox* combo = nullptr;
        QTRY_VERIFY((combo = Editor<QComboBox>(grid)));
        QVERIFY(combo->count() >= 2);
        QCOMPARE(combo->currentText(), before);
        // Another choice, by the keyboard alone.
        Press(combo, combo->currentIndex() == 0 ? Qt::Key_Down : Qt::Key_Up);
        const QString chosen = combo->currentText();
        QVERIFY(chosen != before);
        Press(combo, Qt::Key_Return);
        QTRY_COMPARE(grid->item(row, 1)->text(), chosen);
        QCOMPARE(grid->currentRow(), row + 1);
    }

    void anEmptyFolderCellIsAFieldWithABrowseButton() {
        CSettingsGridCtrl* grid = OpenGrid(QStringLiteral("General Drawing Parameters"));
        QVERIFY(grid);
        const int row = Row(grid, QStringLiteral("Block Folder"));
        QVERIFY(row >= 0);
        QCOMPARE(grid->item(row, 1)->text(), QString());
        grid->setCurrentCell(row, 1);
        Press(grid, Qt::Key_F2);
        QLineEdit* field = nullptr;
        QTRY_VERIFY((field = Editor<QLineEdit>(grid)));
        auto* browse = field->findChild<QAction*>(QStringLiteral("browse"));
        QVERIFY(browse);
        const QString folder =
            QString::fromStdString((world->folder.Dir().Path() / "Blocks").string());
        world->dialogs.answers = {{folder}};
        browse->trigger();
        QTRY_COMPARE(world->dialogs.titles, QStringList{QStringLiteral("Choose a folder")});
        QTRY_VERIFY(grid->item(row, 1)->text().startsWith(folder));
        QVERIFY(!Editor<QLineEdit>(grid));
    }
};

QTEST_MAIN(SettingsGridTest)
#include "SettingsGridTest.moc"
