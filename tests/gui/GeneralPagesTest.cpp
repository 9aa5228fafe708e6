// The "General Settings", "File Locations" and "Border Settings" pages: each
// opens on a standard, shows its values and saves a change made through its
// widgets.
#include "GuiSupport.h"

#include "gui/BordersFormView.h"
#include "gui/FileLocationsFormView.h"
#include "gui/GeneralSettingsFormView.h"
#include "gui/MainFrame.h"
#include "gui/QtText.h"
#include "store/GeneralSettings.h"

#include <QComboBox>
#include <QLineEdit>

namespace fs = std::filesystem;

class GeneralPagesTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;
    std::int32_t id = 0;

    fs::path Folder() const { return test::P(world->core.projects.StandardFile(id, L"")); }
    fs::path Data() const { return world->folder.Dir().Path(); }
    std::string GeneralIni() const { return test::ReadBytes(Folder() / "General.ini"); }
    static QString Text(const fs::path& path) { return QString::fromStdString(path.string()); }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        QCOMPARE(world->core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
        CVX2D_GeneralSettings general;
        QVERIFY(general.Load(world->core.projects, id));
        general.SetDrawingsLocation(2, W(Text(Data() / "PID")));
        general.m_strBordersLocation = W(Text(Data() / "borders"));
        QVERIFY(general.Save());
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void generalSettingsPicksTheDisplayedUnits() {
        CGeneralSettingsFormView view(world->core, *frame, id);
        auto* displayed = view.findChild<QComboBox*>(QStringLiteral("displayedUnitsCombo"));
        auto* apply = view.findChild<QPushButton*>(QStringLiteral("applyButton"));
        QVERIFY(displayed && apply);
        QCOMPARE(view.findChild<QComboBox*>(QStringLiteral("workingUnitsCombo"))->currentText(),
                 QStringLiteral("Metric"));
        QCOMPARE(displayed->currentText(), QStringLiteral("Metric - OD"));
        QCOMPARE(view.findChild<QComboBox*>(QStringLiteral("ratingFormatCombo"))->currentText(),
                 QStringLiteral("150#"));
        auto* version = view.findChild<QLineEdit*>(QStringLiteral("versionEdit"));
        QCOMPARE(version->text(), QStringLiteral("2023"));
        QVERIFY(version->isReadOnly());
        const std::string guid = GeneralIni().substr(GeneralIni().find("ProjectGuid = ") + 14, 36);
        QCOMPARE(view.findChild<QLineEdit*>(QStringLiteral("guidEdit"))->text(),
                 QString::fromStdString(guid));
        QVERIFY(!apply->isEnabled());

        displayed->setCurrentIndex(1);
        QVERIFY(apply->isEnabled());
        apply->click();
        QVERIFY(!apply->isEnabled());
        QVERIFY(GeneralIni().find("Displayed = 1\r\n") != std::string::npos);
        QVERIFY(view.CanClose());
        QVERIFY(world->prompter.asked.empty());
    }

    void fileLocationsBrowsesToAFolderItOffersToCreate() {
        CFileLocationsFormView view(world->core, *frame, id);
        auto* pid = view.findChild<QLineEdit*>(QStringLiteral("folder1"));
        auto* apply = view.findChild<QPushButton*>(QStringLiteral("applyButton"));
        QVERIFY(pid && apply);
        QCOMPARE(pid->text(), Text(Data() / "PID/"));
        QCOMPARE(view.findChild<QLineEdit*>(QStringLiteral("folder4"))->text(),
                 Text(Data() / "borders/"));

        const fs::path templates = Data() / "Standards" / "Templates";
        world->dialogs.answers = {{Text(templates)}};
        world->prompter.answers = {EPromptAnswer::Yes};
        view.findChild<QPushButton*>(QStringLiteral("browse5"))->click();
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QVERIFY(fs::is_directory(templates));
        QCOMPARE(view.findChild<QLineEdit*>(QStringLiteral("folder5"))->text(),
                 Text(templates / ""));
        QVERIFY(apply->isEnabled());
        apply->click();
        QVERIFY(GeneralIni().find("TemplatesLocation = " + (templates / "").string() + "\r\n") !=
                std::string::npos);
        QVERIFY(!apply->isEnabled());
    }

    void bordersPicksADrawingAndRefusesABadLimit() {
        test::WriteBytes(Data() / "borders" / "Bord_Big.dwg", "d");
        CBordersFormView view(world->core, *frame, id);
        QTableWidget* grid = view.Grid();
        auto* apply = view.findChild<QPushButton*>(QStringLiteral("applyButton"));
        QCOMPARE(grid->rowCount(), 10);
        QCOMPARE(grid->item(2, 3)->text(), QStringLiteral("22.0,17.0"));
        QComboBox* border = view.DrawingCombo(2, 1);
        QVERIFY(border);
        QCOMPARE(border->currentText(), QStringLiteral("Bord_C.dwg"));
        QCOMPARE(border->count(), 1);

        grid->item(2, 3)->setText(QStringLiteral("wide"));
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QCOMPARE(grid->item(2, 3)->text(), QStringLiteral("22.0,17.0"));
        QVERIFY(!apply->isEnabled());

        emit border->textActivated(border->itemText(0));
        QVERIFY(apply->isEnabled());
        apply->click();
        QCOMPARE(test::ReadBytes(Folder() / "Borders.ini"),
                 std::string("[Border]\r\nC = Bord_Big.dwg\r\n"));
        QCOMPARE(border->currentText(), QStringLiteral("Bord_Big.dwg"));

        view.findChild<QPushButton*>(QStringLiteral("restoreDefaultsButton"))->click();
        QCOMPARE(border->currentText(), QStringLiteral("Bord_C.dwg"));
        QVERIFY(apply->isEnabled());
    }
};

QTEST_MAIN(GeneralPagesTest)
#include "GeneralPagesTest.moc"
