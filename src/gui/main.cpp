// standards-desk: the desktop program.
#include "app/Startup.h"
#include "gui/FileDialogs.h"
#include "gui/MainFrame.h"
#include "gui/QtPrompter.h"
#include "gui/QtText.h"
#include "platform/System.h"
#include "store/IniRegistry.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QScreen>
#include <QSplashScreen>
#include <QTimer>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Standards Desk"));
    QApplication::setApplicationDisplayName(QStringLiteral("Standards Desk"));
    QApplication::setOrganizationName(QStringLiteral("VANDIX"));
    QApplication::setApplicationVersion(QStringLiteral(SD_VERSION));

    // "-install" is a word of its own, in any letter case, wherever it stands.
    QString datafiles;
    std::vector<std::wstring> words;
    const QStringList arguments = QApplication::arguments();
    for (int i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--datafiles") && i + 1 < arguments.size()) {
            datafiles = arguments[++i];
            continue;
        }
        if (arguments[i].startsWith(QLatin1String("--datafiles=")))
            datafiles = arguments[i].mid(12);
        else if (arguments[i] == QLatin1String("--help") || arguments[i] == QLatin1String("-h")) {
            std::fputs(
                "Usage: standards-desk [--datafiles DIR] [-install]\n\n"
                "  --datafiles DIR  work on this datafiles folder instead of the installed one\n"
                "  -install         set up the datafiles folder with the first standards and end\n"
                "  --version        print the program's version and end\n",
                stdout);
            return 0;
        } else if (arguments[i] == QLatin1String("--version")) {
            std::fputs("standards-desk " SD_VERSION "\n", stdout);
            return 0;
        }
        words.push_back(W(arguments[i]));
    }

    CQtPrompter prompter;
    CStandardsCore core(MakeSystemRegistry(), W(datafiles), prompter);
    CStartup::SServices services;
    services.userName = platform::UserName();
    services.programPath = platform::ExecutablePath();
    services.shippedTemplates = CInstallation::ShippedDataFolder() + L"templates";
#ifdef _WIN32
    services.windowsComponents = true;
#endif
    CStartup startup(*core.registry, core.installation, core.projects, prompter, services);

    // The decision comes first: "-install" ends without a window, and a
    // refused start shows its one message box and nothing else.
    switch (startup.Decide(words)) {
    case CStartup::eInstalled:
        return 0;
    case CStartup::eInstallFailed:
        std::fputs("standards-desk: no datafiles folder could be set up; give one with "
                   "--datafiles DIR.\n",
                   stderr);
        return 1;
    case CStartup::eRefused:
        return 1;
    case CStartup::eRun:
        break;
    }

    QPixmap picture(420, 200);
    picture.fill(QColor(40, 70, 110));
    QSplashScreen splash(picture);
    splash.showMessage(QStringLiteral("Standards Desk\n\nStarting..."), Qt::AlignCenter, Qt::white);
    splash.show();
    QApplication::processEvents();
    startup.Prepare();

    CQtFileDialogs dialogs;
    CMainFrame frame(core, dialogs);
    prompter.SetParent(&frame);
    const QRect screen = QApplication::primaryScreen()->geometry();
    const SRect rect = startup.WindowRect(screen.width(), screen.height());
    frame.setGeometry(rect.left, rect.top, rect.Width(), rect.Height());
    frame.show();
    splash.finish(&frame);
    startup.AfterMainWindowShown();
    return QApplication::exec();
}
