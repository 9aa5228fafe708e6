// standards-desk: the desktop program.
#include "gui/Desktop.h"
#include "gui/FileDialogs.h"
#include "gui/QtPrompter.h"
#include "gui/QtText.h"

#include <QApplication>

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
    CQtFileDialogs dialogs;
    SDesktopRun run;
    run.datafiles = W(datafiles);
    run.words = std::move(words);
    run.ownerChanged = [&prompter](QWidget* owner) { prompter.SetParent(owner); };
    return RunDesktop(run, prompter, dialogs);
}
