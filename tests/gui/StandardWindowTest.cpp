// A standard's window closed with unsaved edits, driven as a user does: open
// the standard from the navigator, choose a page in its page tree, edit it,
// close the tab or quit, answer the question, look at the files.
#include "GuiSupport.h"

#include "gui/PushDialog.h"
#include "gui/QtText.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTableWidget>
#include <QTimer>

namespace fs = std::filesystem;

namespace {

// One kind of page that holds edits until Apply.
struct SPageKind {
    const char* tag;
    const char* title;
    const char* parent; // the page tree item above it, if any
    const wchar_t* file;
    // The words of "Standard 'Pipe' <what> have been modified...".
    const wchar_t* what;
    // What the file holds once the edit is saved.
    const char* saved;
    // Makes the edit through the page's widgets.
    std::function<void(QWidget* page, const QString& datafiles)> edit;
};

template <typename Widget> Widget* Find(QWidget* page, const char* name) {
    auto* widget = page->findChild<Widget*>(QString::fromLatin1(name));
    if (!widget)
        qFatal("The page has no '%s'", name);
    return widget;
}

const SPageKind kPages[] = {
    {"general settings", "General Settings", "", L"General.ini", L"general settings",
     "Displayed = 1\r\n",
     [](QWidget* page, const QString&) {
         Find<QComboBox>(page, "displayedUnitsCombo")->setCurrentIndex(1);
     }},
    {"file locations", "File Locations", "", L"General.ini", L"file locations", "ELECTRIC = /",
     [](QWidget* page, const QString& datafiles) {
         auto* edit = Find<QLineEdit>(page, "folder0");
         edit->setText(datafiles);
         emit edit->editingFinished();
     }},
    {"border settings", "Border Settings", "", L"Borders.ini", L"border settings",
     "C = 30.0,20.0\r\n",
     [](QWidget* page, const QString&) {
         Find<QTableWidget>(page, "bordersGrid")->item(2, 3)->setText(QStringLiteral("30.0,20.0"));
     }},
    {"settings section", "General Drawing Parameters", "P&ID Settings", L"PID.ini", L"settings",
     "Variable 145 = 3.500000\r\n",
     [](QWidget* page, const QString&) {
         Find<QTableWidget>(page, "settingsGrid")->item(3, 1)->setText(QStringLiteral("3.5"));
     }},
    {"layers", "Layers", "P&ID Settings", L"Layers.ini", L"PID layers", "= PROCX\r\n",
     [](QWidget* page, const QString&) {
         auto* grid = Find<QTableWidget>(page, "layersGrid");
         const auto found = grid->findItems(QStringLiteral("Process"), Qt::MatchExactly);
         QVERIFY(found.size() == 1);
         grid->item(found[0]->row(), 1)->setText(QStringLiteral("PROCX"));
     }},
    {"specs", "Specs", "", L"Specs.ini", L"specs", "VX2D_SPEC_5 = CS150\r\n",
     [](QWidget* page, const QString&) {
         // Row 0 is the heading of the common specs.
         Find<QTableWidget>(page, "specsGrid")->item(1, 0)->setCheckState(Qt::Checked);
     }},
};

} // namespace

class StandardWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;

    fs::path File(const wchar_t* name) const { return world->StandardFile(1, name); }
    // The file's bytes; "(none)" while it does not exist.
    std::string Bytes(const wchar_t* name) const {
        return fs::exists(File(name)) ? test::ReadBytes(File(name)) : std::string("(none)");
    }
    QMdiSubWindow* Window() const { return frame->Documents()->subWindowList().value(0); }
    QWidget* OpenPage(const SPageKind& kind) {
        const QString title = QString::fromUtf8(kind.title);
        return OpenStandardPage(*frame, {QStringLiteral("Pipe")},
                                *kind.parent ? QStringList{QString::fromUtf8(kind.parent), title}
                                             : QStringList{title});
    }
    static std::wstring Question(const SPageKind& kind) {
        return L"Standard 'Pipe' " + std::wstring(kind.what) +
               L" have been modified.\n\nDo you want to save your changes?";
    }
    static void AddRows(bool withAnswers) {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("quit");
        QTest::addColumn<bool>("yes");
        for (int kind = 0; kind < static_cast<int>(std::size(kPages)); ++kind) {
            for (const bool quit : {false, true}) {
                for (const bool yes : {true, false}) {
                    if (!withAnswers && !yes)
                        continue;
                    QTest::addRow("%s, %s%s", kPages[kind].tag, quit ? "quit" : "close tab",
                                  withAnswers ? (yes ? ", Yes" : ", No") : "")
                        << kind << quit << yes;
                }
            }
        }
    }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        std::int32_t id = 0;
        QCOMPARE(world->core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
        test::WriteBytes(world->folder.Dir().Path() / "SpecDatafile.ini",
                         "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->resize(1200, 800);
        frame->show();
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void closingAModifiedPageAsksFirst_data() { AddRows(true); }
    void closingAModifiedPageAsksFirst() {
        QFETCH(int, kind);
        QFETCH(bool, quit);
        QFETCH(bool, yes);
        const SPageKind& page = kPages[kind];
        QWidget* view = OpenPage(page);
        QVERIFY(view);
        const std::string before = Bytes(page.file);
        page.edit(view, Q(world->folder.Dir().Text()));
        QCOMPARE(Bytes(page.file), before);

        world->prompter.answers = {yes ? EPromptAnswer::Yes : EPromptAnswer::No};
        QVERIFY(quit ? frame->close() : Window()->close());
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QCOMPARE(Q(world->prompter.asked[0].text), Q(Question(page)));
        QVERIFY(world->prompter.asked[0].buttons == EPromptButtons::YesNo);
        if (yes)
            QVERIFY2(Bytes(page.file).find(page.saved) != std::string::npos,
                     Bytes(page.file).c_str());
        else
            QCOMPARE(Bytes(page.file), before);
    }

    void aFailedSaveKeepsTheWindowAndTheEdit_data() { AddRows(false); }
    void aFailedSaveKeepsTheWindowAndTheEdit() {
        QFETCH(int, kind);
        QFETCH(bool, quit);
        const SPageKind& page = kPages[kind];
        QWidget* view = OpenPage(page);
        QVERIFY(view);
        page.edit(view, Q(world->folder.Dir().Text()));
        // A folder where the file goes: the save cannot put the file there.
        const fs::path file = File(page.file);
        const fs::path aside = file.string() + ".aside";
        if (fs::exists(file))
            fs::rename(file, aside);
        test::WriteBytes(file / "blocker", "x");

        world->prompter.answers = {EPromptAnswer::Yes};
        QVERIFY(!(quit ? frame->close() : Window()->close()));
        QCOMPARE(frame->Documents()->subWindowList().size(), 1);
        QVERIFY(frame->isVisible());
        QCOMPARE(world->prompter.asked.size(), std::size_t{2});
        const SPrompt& told = world->prompter.asked[1];
        QVERIFY(told.icon == EPromptIcon::Stop);
        QVERIFY2(told.text.find(L"standard 'Pipe'") != std::wstring::npos,
                 qPrintable(Q(told.text)));

        // The edit is still there: Apply writes it once the file can be saved.
        auto* apply = view->findChild<QPushButton*>(QStringLiteral("applyButton"));
        QVERIFY(apply && apply->isEnabled());
        fs::remove_all(file);
        if (fs::exists(aside))
            fs::rename(aside, file);
        apply->click();
        QVERIFY2(Bytes(page.file).find(page.saved) != std::string::npos, Bytes(page.file).c_str());
        QVERIFY(!apply->isEnabled());
        world->prompter.asked.clear();
        QVERIFY(Window()->close());
        QVERIFY(world->prompter.asked.empty());
    }

    // "Apply to Other Standards..." on a settings page: the unsaved edit is
    // saved first, the client's box ticks its standards, the preview shows
    // what would change, Apply changes it and the table says so.
    void aPagesValuesGoToTheStandardsTicked() {
        std::int32_t plant = 0, third = 0, client = 0;
        std::wstring clientName;
        QCOMPARE(world->core.projects.CreateProject({L"Plant", 0, 1, 0, false}, plant), eProjectOk);
        QCOMPARE(world->core.projects.CreateProject({L"Third", 0, 1, 0, false}, third), eProjectOk);
        QVERIFY(world->core.clients.CreateClient(client, clientName));
        QVERIFY(world->core.clients.AddProjectToClient(client, plant));
        QVERIFY(world->core.clients.AddProjectToClient(client, third));
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->show();

        const SPageKind& kind = kPages[3];
        QWidget* view = OpenPage(kind);
        QVERIFY(view);
        kind.edit(view, {});
        auto* grid = Find<QTableWidget>(view, "settingsGrid");
        grid->setCurrentCell(3, 1);

        bool seen = false;
        QTimer::singleShot(0, this, [&] {
            auto* dialog = qobject_cast<CPushDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            // A failed check leaves the lambda: the dialog goes all the same.
            const auto closing = qScopeGuard([dialog] { dialog->accept(); });
            seen = true;
            QCOMPARE(dialog->TickedRows(), std::vector<std::wstring>{L"PID/Settings/145"});
            QVERIFY(!dialog->PreviewButton()->isEnabled());
            // The client's box ticks both of its standards.
            QTreeWidgetItem* clientItem = dialog->Standards()->topLevelItem(0);
            QCOMPARE(clientItem->childCount(), 2);
            clientItem->setCheckState(0, Qt::Checked);
            QCOMPARE(dialog->TickedStandards(), (std::vector<std::int32_t>{plant, third}));
            QVERIFY(!dialog->ApplyButton()->isEnabled()); // not before the preview
            dialog->PreviewButton()->click();
            QTableWidget* table = dialog->Outcome();
            QCOMPARE(table->rowCount(), 2);
            QCOMPARE(table->item(0, 0)->text(), QStringLiteral("Plant"));
            QCOMPARE(table->item(0, 2)->text(), QStringLiteral("2.5"));
            QCOMPARE(table->item(0, 3)->text(), QStringLiteral("3.5"));
            QCOMPARE(table->item(1, 4)->text(), QStringLiteral("Will change"));
            QVERIFY(test::ReadBytes(world->StandardFile(plant, L"PID.ini")).find("3.5") ==
                    std::string::npos);
            dialog->ApplyButton()->click();
            QCOMPARE(table->item(0, 4)->text(), QStringLiteral("Changed"));
            QCOMPARE(table->item(1, 4)->text(), QStringLiteral("Changed"));
        });
        world->prompter.answers = {EPromptAnswer::Yes}; // save the edit first
        Find<QPushButton>(view, "pushButton")->click();
        QVERIFY(seen);
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QVERIFY(Bytes(kind.file).find(kind.saved) != std::string::npos);
        for (const std::int32_t id : {plant, third})
            QVERIFY(test::ReadBytes(world->StandardFile(id, L"PID.ini")).find(kind.saved) !=
                    std::string::npos);
    }
};

QTEST_MAIN(StandardWindowTest)
#include "StandardWindowTest.moc"
