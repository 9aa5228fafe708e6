// Takes the screenshots a reviewer looks at: the main window, an open
// settings page, each page of a standard, the question on closing a modified
// one, the comparison (whole and differences only), the drawings list and
// the check of the datafiles folder, on
// a seeded datafiles folder; with --dark, under a dark palette. Run by
// tests/gui/screenshots.sh under Xvfb.
#include "gui/BackgroundWork.h"
#include "gui/CompareWindow.h"
#include "gui/DatafilesChooser.h"
#include "gui/Desktop.h"
#include "gui/DoctorDlg.h"
#include "gui/DrawingsFormView.h"
#include "gui/FileDialogs.h"
#include "gui/MainFrame.h"
#include "gui/NavigatorDlg.h"
#include "gui/NewStandardWizard.h"
#include "gui/PushDialog.h"
#include "gui/QtPrompter.h"
#include "gui/QtText.h"
#include "gui/SpecsFormView.h"
#include "gui/StandardDocument.h"
#include "store/IniRegistry.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStyleFactory>
#include <QTableWidget>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <fstream>

namespace {

void Save(QWidget* window, const QString& folder, const QString& name) {
    QApplication::processEvents();
    window->grab().save(folder + QLatin1Char('/') + name);
}

QPalette DarkPalette() {
    QPalette palette;
    const QColor window(45, 45, 48), base(30, 30, 30), text(220, 220, 220);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, window);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(120, 120, 120));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(120, 120, 120));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(120, 120, 120));
    return palette;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Standards Desk"));
    QApplication::setWindowIcon(ApplicationIcon());
    const QStringList args = QApplication::arguments();
    const QString datafiles = args.value(args.indexOf(QStringLiteral("--datafiles")) + 1);
    const QString out = args.value(args.indexOf(QStringLiteral("--out")) + 1);
    QDir().mkpath(out);
    if (args.contains(QStringLiteral("--dark"))) {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(DarkPalette());
    }

    CQtPrompter prompter;
    {
        // The first start, with no datafiles folder known.
        const std::unique_ptr<IRegistry> nowhere = std::make_unique<CIniRegistry>(
            W(out + QStringLiteral("/none-machine")), W(out + QStringLiteral("/none-user")));
        CDatafilesChoice choice(*nowhere, prompter);
        CQtFileDialogs none;
        CDatafilesChooserDlg chooser(
            choice, none, Q(CDatafilesChoice::Reason(CInstallation(*nowhere))), QString());
        chooser.show();
        Save(&chooser, out, QStringLiteral("first-start.png"));
    }
    CStandardsCore core(MakeSystemRegistry(), W(datafiles), prompter);
    CQtFileDialogs dialogs;
    CMainFrame frame(core, dialogs);
    frame.setGeometry(0, 0, 1280, 800);
    frame.show();
    prompter.SetParent(&frame);
    Save(&frame, out, QStringLiteral("main-window.png"));

    frame.OpenStandard(1);
    auto* document =
        qobject_cast<CStandardDocument*>(frame.Documents()->activeSubWindow()->widget());
    document->ShowPage(document->Pages()->FindPage(QStringLiteral("Dimensioning Variables"),
                                                   QStringLiteral("P&ID Settings")));
    Save(&frame, out, QStringLiteral("settings-page.png"));

    document->ShowPage(
        document->Pages()->FindPage(QStringLiteral("PID"), QStringLiteral("Drawings")));
    Save(&frame, out, QStringLiteral("drawings.png"));

    const std::pair<QString, QString> pages[] = {
        {QStringLiteral("General Settings"), QString()},
        {QStringLiteral("File Locations"), QString()},
        {QStringLiteral("Border Settings"), QString()},
        {QStringLiteral("Lines"), QString()},
        {QStringLiteral("Specs"), QString()},
        {QStringLiteral("Layers"), QStringLiteral("P&ID Settings")},
    };
    for (const auto& [title, parent] : pages) {
        document->ShowPage(document->Pages()->FindPage(title, parent));
        QString name = title.toLower();
        Save(&frame, out,
             QStringLiteral("page-%1.png").arg(name.replace(QLatin1Char(' '), QLatin1Char('-'))));
    }

    {
        // The question of New... on the Specs page.
        auto* specs = qobject_cast<CSpecsFormView*>(
            document->ShowPage(document->Pages()->FindPage(QStringLiteral("Specs"), QString())));
        CSpecPlaceDialog dialog(
            QStringLiteral("New Spec"), QStringLiteral("A new spec gets an empty folder."),
            QStringLiteral("SS316L Northwind"), specs->Editor().Places(), {eSpecClient, 1}, &frame);
        dialog.show();
        Save(&dialog, out, QStringLiteral("spec-dialog.png"));
    }

    // A changed value, then the question on closing the standard's window:
    // the whole screen, box and all; No leaves the file as it was.
    auto* settings = document->ShowPage(document->Pages()->FindPage(
        QStringLiteral("General Drawing Parameters"), QStringLiteral("P&ID Settings")));
    settings->findChild<QTableWidget*>(QStringLiteral("settingsGrid"))
        ->item(3, 1)
        ->setText(QStringLiteral("4.5"));
    QTimer::singleShot(700, [&] {
        QApplication::primaryScreen()->grabWindow(0).save(out +
                                                          QStringLiteral("/close-question.png"));
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->button(QMessageBox::No)->click();
    });
    frame.Documents()->activeSubWindow()->close();

    CNewStandardWizardDlg wizard(core, dialogs, 1, &frame);
    wizard.show();
    Save(&wizard, out, QStringLiteral("new-standard-wizard.png"));
    wizard.next();
    Save(&wizard, out, QStringLiteral("new-standard-wizard-units.png"));
    wizard.hide();

    frame.OpenComparison(1);
    auto* comparison =
        qobject_cast<CCompareWindow*>(frame.Documents()->activeSubWindow()->widget());
    CCompareProjectsFormView::SelectStandard(comparison->Selector()->Lower(), 2);
    Save(&frame, out, QStringLiteral("comparison.png"));

    {
        // The same comparison with only the settings the two do not share.
        // A row chosen: the copy buttons name where its value would go.
        comparison->findChild<QCheckBox*>(QStringLiteral("differencesOnly"))->setChecked(true);
        QTableWidget* compared = comparison->Result()->Grid();
        for (int row = 0; row < compared->rowCount(); ++row) {
            if (!compared->isRowHidden(row) &&
                compared->item(row, 0)->text() == QStringLiteral("Text Height"))
                compared->selectRow(row);
        }
        Save(&frame, out, QStringLiteral("compare-differences-only.png"));
    }

    // The settings grid used from the keyboard: the current cell framed.
    frame.OpenStandard(1);
    auto* reopened =
        qobject_cast<CStandardDocument*>(frame.Documents()->activeSubWindow()->widget());
    auto* grid =
        reopened
            ->ShowPage(reopened->Pages()->FindPage(QStringLiteral("General Drawing Parameters"),
                                                   QStringLiteral("P&ID Settings")))
            ->findChild<QTableWidget*>(QStringLiteral("settingsGrid"));
    frame.activateWindow();
    grid->setFocus();
    grid->setCurrentCell(3, 1);
    Save(&frame, out, QStringLiteral("settings-keyboard.png"));

    {
        // Apply to Other Standards: the text height for the other standards, previewed.
        CPushDialog push(core, frame, 1,
                         {SettingsRowId(2, 173), SettingsRowId(2, 145), SettingsRowId(2, 54)},
                         {SettingsRowId(2, 145)}, &frame);
        push.Tick(2);
        push.Tick(3);
        push.Preview();
        push.show();
        Save(&push, out, QStringLiteral("apply-to-other-standards.png"));
    }

    {
        // A copy with its drawings under way: the whole screen, dialog and all.
        CBackgroundWork::showAfterMs = 0;
        std::atomic<bool> taken{false};
        QTimer::singleShot(600, [&] {
            QApplication::primaryScreen()->grabWindow(0).save(out +
                                                              QStringLiteral("/copy-progress.png"));
            taken = true;
        });
        frame.RunLong(L"Copying standard 'Refinery Metric'...", true,
                      [&](const CProgress& progress) {
                          while (!taken) {
                              progress(121u << 20, 288u << 20, L"Drawings/PID/P-100.dwg");
                              QThread::msleep(20);
                          }
                      });
    }

    {
        // The check of the whole folder, with a few problems put in: a bad
        // layer and setting of "Tank Farm", its GUID that of "Refinery
        // Metric", and a lock file nobody holds.
        CBackgroundWork::showAfterMs = 400;
        const std::filesystem::path root = core.datafiles.Root();
        const std::filesystem::path tank = root / "Projects" / "VX2D_PRJ_3 - Tank Farm";
        std::ofstream(tank / "Layers.ini", std::ios::binary)
            << "[PID - Linetypes]\r\n014 = WAVY\r\n[PID - LineWeights]\r\n016 = 7\r\n";
        std::ofstream(tank / "PID.ini", std::ios::binary) << "[Settings]\r\nVariable 145 = 2,5\r\n";
        std::ofstream(root / "ClientDatafile.ini.lock", std::ios::binary) << "";
        // A copy made by hand, GUID and all.
        std::filesystem::copy_file(
            root / "Projects" / "VX2D_PRJ_1 - Refinery Metric" / "General.ini",
            tank / "General.ini", std::filesystem::copy_options::overwrite_existing);
        CDoctorDlg* doctor = frame.CheckDatafilesFolder();
        doctor->Table()->selectRow(0);
        Save(doctor, out, QStringLiteral("check-datafiles-folder.png"));
    }
    return 0;
}
