#include "gui/Desktop.h"

#include "app/DatafilesChoice.h"
#include "app/Startup.h"
#include "gui/BackgroundWork.h"
#include "gui/DatafilesChooser.h"
#include "gui/MainFrame.h"
#include "gui/QtText.h"
#include "platform/System.h"

#include <QApplication>
#include <QScreen>
#include <QSplashScreen>
#include <optional>

QIcon ApplicationIcon() {
    // The pictures are built into this library; the linker keeps them only
    // when asked for by name.
    Q_INIT_RESOURCE(icons);
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/standards-desk-%1.png").arg(size), QSize(size, size));
    return icon;
}

int RunDesktop(const SDesktopRun& run, IPrompter& boxes, IFileDialogs& dialogs) {
    QApplication::setWindowIcon(ApplicationIcon());
    QGuiApplication::setDesktopFileName(QStringLiteral("standards-desk"));
    // Long work asks its questions from a worker thread.
    CGuiThreadPrompter prompter(boxes);
    std::wstring folder;
    {
        const std::unique_ptr<IRegistry> registry = run.registry();
        folder = CDatafilesChoice(*registry, prompter).StartFolder(run.datafiles);
    }
    // One pass per datafiles folder: File > Open Datafiles Folder... closes
    // the main window and the program starts again on the folder chosen.
    for (bool chosen = false;; chosen = true) {
        CStandardsCore core(run.registry(), folder, prompter);
        CStartup::SServices services;
        services.userName = platform::UserName();
        services.programPath = platform::ExecutablePath();
        services.shippedTemplates = CInstallation::ShippedDataFolder() + L"templates";
        services.offerDatafilesChoice = true;
#ifdef _WIN32
        services.windowsComponents = true;
#endif
        CStartup startup(*core.registry, core.installation, core.projects, prompter, services);

        // The decision comes first: "-install" ends without a window, and a
        // refused start shows its one message box and nothing else.
        const CStartup::EResult result = startup.Decide(run.words);
        if (result == CStartup::eInstalled)
            return 0;
        if (result == CStartup::eInstallFailed) {
            std::fputs("standards-desk: no datafiles folder could be set up; give one with "
                       "--datafiles DIR.\n",
                       stderr);
            return 1;
        }
        if (result == CStartup::eNoDatafiles || (result == CStartup::eRefused && chosen)) {
            // Not this folder: another one, or quit.
            CDatafilesChoice choice(*core.registry, prompter);
            const QString reason = result == CStartup::eNoDatafiles
                                       ? Q(CDatafilesChoice::Reason(core.installation))
                                       : QObject::tr("Choose another datafiles folder.");
            CDatafilesChooserDlg chooser(choice, dialogs, reason,
                                         Q(core.installation.DatafilesPath()));
            if (chooser.exec() != QDialog::Accepted)
                return 1;
            folder = W(chooser.Folder());
            continue;
        }
        if (result == CStartup::eRefused)
            return 1;

        std::optional<QSplashScreen> splash;
        if (!chosen && run.splash) {
            QPixmap picture(420, 200);
            picture.fill(QColor(40, 70, 110));
            splash.emplace(picture);
            splash->showMessage(QStringLiteral("Standards Desk\n\nStarting..."), Qt::AlignCenter,
                                Qt::white);
            splash->show();
            QApplication::processEvents();
        }
        QApplication::setOverrideCursor(Qt::WaitCursor);
        startup.Prepare();
        QApplication::restoreOverrideCursor();

        CMainFrame frame(core, dialogs);
        if (run.ownerChanged)
            run.ownerChanged(&frame);
        const QRect screen = QApplication::primaryScreen()->geometry();
        const SRect rect = startup.WindowRect(screen.width(), screen.height());
        frame.setGeometry(rect.left, rect.top, rect.Width(), rect.Height());
        frame.show();
        if (run.shown)
            run.shown(frame);
        if (splash)
            splash->finish(&frame);
        startup.AfterMainWindowShown();
        const int code = QApplication::exec();
        if (run.ownerChanged)
            run.ownerChanged(nullptr);
        if (frame.NextFolder().isEmpty())
            return code;
        folder = W(frame.NextFolder());
    }
}
