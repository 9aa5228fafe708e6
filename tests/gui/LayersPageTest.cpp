// The layers page and "Restore Defaults" on a settings page, driven through
// their widgets.
#include "GuiSupport.h"

#include "gui/LayersFormView.h"
#include "gui/MainFrame.h"
#include "gui/SettingsFormView.h"

#include <QComboBox>
#include <QToolButton>

class LayersPageTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;
    std::int32_t id = 0;

    std::filesystem::path File(const wchar_t* name) { return world->StandardFile(id, name); }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        QCOMPARE(world->core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void theLayersPageShowsTheStandardsLayersAndWritesAChange() {
        test::WriteBytes(File(L"Layers.ini"), "[PID - Layers]\r\n038 = PROC\r\n");
        CLayersFormView view(world->core, *frame, id, 2);
        QTableWidget* grid = view.findChild<QTableWidget*>(QStringLiteral("layersGrid"));
        auto* apply = view.findChild<QPushButton*>(QStringLiteral("applyButton"));
        QVERIFY(grid && apply);
        QCOMPARE(grid->rowCount(), 22);
        QList<QTableWidgetItem*> found =
            grid->findItems(QStringLiteral("Process"), Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        const int row = found[0]->row();
        QCOMPARE(grid->item(row, 1)->text(), QStringLiteral("PROC"));
        QCOMPARE(view.findChild<QPushButton*>(QStringLiteral("color%1").arg(row))->text(),
                 QStringLiteral("Cyan (4)"));
        auto* linetype = view.findChild<QComboBox*>(QStringLiteral("linetype%1").arg(row));
        auto* lineweight = view.findChild<QComboBox*>(QStringLiteral("lineweight%1").arg(row));
        QCOMPARE(linetype->currentText(), QStringLiteral("CONTINUOUS"));
        QCOMPARE(lineweight->currentText(), QStringLiteral("Default"));
        QCOMPARE(lineweight->count(), 25);
        QVERIFY(!apply->isEnabled());

        lineweight->setCurrentText(QStringLiteral("0.50 mm"));
        emit lineweight->textActivated(QStringLiteral("0.50 mm"));
        QVERIFY(apply->isEnabled());
        apply->click();
        QVERIFY(!apply->isEnabled());
        // The whole P&ID set is written, with the file's name and the new lineweight.
        const std::string written = test::ReadBytes(File(L"Layers.ini"));
        QVERIFY(written.find("[PID - Layers]\r\n014 = ATTRIB\r\n") != std::string::npos);
        QVERIFY(written.find("038 = PROC\r\n") != std::string::npos);
        QVERIFY(written.find("[PID - LineWeights]\r\n014 = -3\r\n") != std::string::npos);
        QVERIFY(written.find("038 = 50\r\n") != std::string::npos);

        // The picker answers the swatch clicked.
        CColorIndexDialog picker(4, &view);
        picker.findChild<QToolButton*>(QStringLiteral("swatch30"))->click();
        QCOMPARE(picker.Index(), 30);

        view.findChild<QPushButton*>(QStringLiteral("restoreDefaultsButton"))->click();
        QCOMPARE(grid->item(row, 1)->text(), QStringLiteral("PROCESS"));
        QCOMPARE(lineweight->currentText(), QStringLiteral("Default"));
        QVERIFY(apply->isEnabled());
    }

    void restoreDefaultsOnASettingsPageShowsModifiedUntilApply() {
        test::WriteBytes(File(L"PID.ini"), "[Settings]\r\nVariable 145 = 3.500000\r\n");
        CSettingsFormView view(world->core, *frame, id, 2, 4);
        auto* apply = view.findChild<QPushButton*>(QStringLiteral("applyButton"));
        QCOMPARE(view.Grid()->item(3, 0)->text(), QStringLiteral("Text Height"));
        QCOMPARE(view.Grid()->item(3, 1)->text(), QStringLiteral("3.5"));

        view.findChild<QPushButton*>(QStringLiteral("restoreDefaultsButton"))->click();
        QCOMPARE(view.Grid()->item(3, 1)->text(), QStringLiteral("2.5"));
        QVERIFY(apply->isEnabled());
        QCOMPARE(test::ReadBytes(File(L"PID.ini")),
                 std::string("[Settings]\r\nVariable 145 = 3.500000\r\n"));
        apply->click();
        QVERIFY(!apply->isEnabled());
        QCOMPARE(test::ReadBytes(File(L"PID.ini")),
                 std::string("[Settings]\r\nVariable 145 = 2.500000\r\n"));
    }
};

QTEST_MAIN(LayersPageTest)
#include "LayersPageTest.moc"
