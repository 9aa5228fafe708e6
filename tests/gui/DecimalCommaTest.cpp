// The pages of a standard under a German locale, as the desktop toolkit sets
// it for a German user: numbers show and save as the files write them, with
// a decimal point.
#include "GuiSupport.h"

#include "gui/QtText.h"

#include <QComboBox>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <clocale>
#include <cstring>

namespace fs = std::filesystem;

namespace {

struct SNumberCase {
    const char* tag;
    QStringList page;
    const wchar_t* file;
    const char* before; // the file as another workstation wrote it
    QString shown;      // what the page shows of it
    QString typed;      // what the user types or picks instead
    const char* saved;  // the line Apply writes
    // The page's cell or field of the number.
    std::function<QString(QWidget* page)> text;
    std::function<void(QWidget* page, const QString& text)> type;
};

QTableWidget* Grid(QWidget* page, const char* name) {
    return page->findChild<QTableWidget*>(QString::fromLatin1(name));
}

// The lineweight drop-down of the "Process" layer.
QComboBox* ProcessLineweight(QWidget* page) {
    const auto found =
        Grid(page, "layersGrid")->findItems(QStringLiteral("Process"), Qt::MatchExactly);
    return found.size() == 1
               ? page->findChild<QComboBox*>(QStringLiteral("lineweight%1").arg(found[0]->row()))
               : nullptr;
}

const SNumberCase kCases[] = {
    {"settings real",
     {QStringLiteral("P&ID Settings"), QStringLiteral("General Drawing Parameters")},
     L"PID.ini",
     "[Settings]\r\nVariable 145 = 0.500000\r\n",
     QStringLiteral("0.5"),
     QStringLiteral("2.5"),
     "Variable 145 = 2.500000\r\n",
     [](QWidget* page) { return Grid(page, "settingsGrid")->item(3, 1)->text(); },
     [](QWidget* page, const QString& text) {
         Grid(page, "settingsGrid")->item(3, 1)->setText(text);
     }},
    {"layer lineweight",
     {QStringLiteral("P&ID Settings"), QStringLiteral("Layers")},
     L"Layers.ini",
     "[PID - LineWeights]\r\n038 = 50\r\n",
     QStringLiteral("0.50 mm"),
     QStringLiteral("0.35 mm"),
     "038 = 35\r\n",
     [](QWidget* page) { return ProcessLineweight(page)->currentText(); },
     [](QWidget* page, const QString& text) {
         QComboBox* combo = ProcessLineweight(page);
         combo->setCurrentText(text);
         emit combo->textActivated(text);
     }},
};

} // namespace

class DecimalCommaTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;

    fs::path File(const wchar_t* name) const { return world->StandardFile(1, name); }

private slots:
    void initTestCase() {
        if (!std::setlocale(LC_ALL, "de_DE.UTF-8") ||
            std::strcmp(std::localeconv()->decimal_point, ",") != 0)
            QSKIP("The German locale de_DE.UTF-8 is not installed here (generate it with "
                  "localedef -i de_DE -f UTF-8 de_DE.UTF-8): the pages are not checked under "
                  "a decimal comma.");
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }
    void init() {
        world = std::make_unique<SGuiWorld>();
        std::int32_t id = 0;
        QCOMPARE(world->core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->show();
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void numbersShowAndSaveWithAPoint_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < static_cast<int>(std::size(kCases)); ++i)
            QTest::newRow(kCases[i].tag) << i;
    }
    void numbersShowAndSaveWithAPoint() {
        QFETCH(int, index);
        const SNumberCase& c = kCases[index];
        test::WriteBytes(File(c.file), c.before);
        QWidget* page = OpenStandardPage(*frame, {QStringLiteral("Pipe")}, c.page);
        QVERIFY(page);
        QCOMPARE(c.text(page), c.shown);
        c.type(page, c.typed);
        QCOMPARE(c.text(page), c.typed);
        page->findChild<QPushButton*>(QStringLiteral("applyButton"))->click();
        const std::string saved = test::ReadBytes(File(c.file));
        QVERIFY2(saved.find(c.saved) != std::string::npos, saved.c_str());
    }
};

QTEST_MAIN(DecimalCommaTest)
#include "DecimalCommaTest.moc"
