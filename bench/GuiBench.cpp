// The desktop program's navigator on large datafiles folders, drawn
// offscreen: the time to show the main window and the peak memory of the
// process that shows it (one child process per size, so that each has its
// own peak), and at 50,000 standards the time of a right-click on a standard
// and of a rename in the tree. Run: build/bin/gui_bench (scripts/bench.sh
// prints its rows).
#include "BenchCore.h"
#include "BenchReport.h"

#include "gui/FileDialogs.h"
#include "gui/MainFrame.h"
#include "gui/NavigatorDlg.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <fmt/format.h>
#include <iostream>
#include <map>
#include <sstream>
#include <sys/resource.h>

namespace fs = std::filesystem;
using namespace bench;

namespace {

constexpr int kShowRuns = 3;
constexpr long long kSmall = 1000;
constexpr long long kLarge = 50000;
constexpr double kWaitLimit = 30;

long PeakKb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Processes events until `done` holds; false after kWaitLimit seconds.
bool WaitFor(const std::function<bool()>& done) {
    const auto start = std::chrono::steady_clock::now();
    while (!done()) {
        if (SecondsSince(start) > kWaitLimit)
            return false;
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

int Failed(const char* why) {
    std::cerr << "gui_bench: " << why << std::endl;
    return 1;
}

int CountItems(const QTreeWidget* tree) {
    int count = 0;
    for (QTreeWidgetItemIterator it(const_cast<QTreeWidget*>(tree)); *it; ++it)
        ++count;
    return count;
}

// The main window over `datafiles`, shown: the child's answer is "seconds",
// "peak_kb" and "items" lines, and with `interact` also "right_click" and
// "rename" lines, each the median of its runs.
int Child(const fs::path& datafiles, bool interact, int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform's remarks (no raise(), no keyboard grab) are
    // not the program's.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            std::cerr << text.toStdString() << std::endl;
    });
    QApplication application(argc, argv);
    SBenchCore b(datafiles);
    CQtFileDialogs dialogs;

    const auto start = std::chrono::steady_clock::now();
    CMainFrame frame(b.core, dialogs);
    frame.resize(1280, 900);
    frame.show();
    if (!QTest::qWaitForWindowExposed(&frame))
        return Failed("the main window was not shown");
    QApplication::processEvents();
    const double shown = SecondsSince(start);
    CNavigatorTreeCtrl* tree = frame.NavigatorPanel()->Tree();
    std::cout << "seconds " << shown << "\npeak_kb " << PeakKb() << "\nitems " << CountItems(tree)
              << "\n";
    if (!interact)
        return 0;

    // Standards under clients spread over the tree.
    std::vector<const QTreeWidgetItem*> clients;
    for (int at = 0; at < tree->topLevelItemCount(); ++at) {
        if (tree->topLevelItem(at)->childCount())
            clients.push_back(tree->topLevelItem(at));
    }
    if (clients.empty())
        return Failed("no clients with standards");
    std::vector<QString> texts;
    for (std::size_t i = 1; i <= 3; ++i) {
        const QTreeWidgetItem* client = clients[clients.size() * i / 4];
        texts.push_back(client->child(client->childCount() / 2)->text(0));
    }

    // The pop-up menu closes as soon as it is up.
    QTimer closer;
    closer.setInterval(0);
    QObject::connect(&closer, &QTimer::timeout, [] {
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    });
    closer.start();
    std::vector<double> clicks;
    for (const QString& text : texts) {
        // The items are made anew by every render: find them by their text.
        const auto found = tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
        if (found.size() != 1)
            return Failed("a standard to right-click is not in the tree");
        tree->scrollToItem(found.front());
        QApplication::processEvents();
        const QPoint pos = tree->visualItemRect(found.front()).center();
        const auto clicked = std::chrono::steady_clock::now();
        emit tree->customContextMenuRequested(pos);
        clicks.push_back(SecondsSince(clicked));
        if (!tree->currentItem() || tree->currentItem()->text(0) != text)
            return Failed("the right-click did not select the standard");
    }
    closer.stop();
    std::cout << "right_click " << Median(clicks) << "\n";

    // F2 on a standard, its new name typed, Enter, until the tree shows it;
    // then the same back to its old name.
    std::vector<double> renames;
    const QString renamed = texts[0] + QStringLiteral(" renamed");
    for (const auto& [from, to] : {std::pair{texts[0], renamed}, std::pair{renamed, texts[0]}}) {
        const auto found = tree->findItems(from, Qt::MatchExactly | Qt::MatchRecursive);
        if (found.size() != 1)
            return Failed("a standard to rename is not in the tree");
        tree->setCurrentItem(found.front());
        QApplication::processEvents();
        const auto renaming = std::chrono::steady_clock::now();
        frame.Action(eCmdRenameStandard)->trigger();
        auto* editor = tree->findChild<QLineEdit*>();
        if (!editor)
            return Failed("F2 did not start editing the label");
        editor->setText(to);
        QTest::keyClick(editor, Qt::Key_Return);
        if (!WaitFor([&] { return tree->currentItem() && tree->currentItem()->text(0) == to; }))
            return Failed("the tree did not show the new name");
        renames.push_back(SecondsSince(renaming));
        // The closed editor goes at the next turn of the event loop.
        WaitFor([&] { return tree->findChild<QLineEdit*>() == nullptr; });
    }
    std::cout << "rename " << Median(renames) << "\n";
    return 0;
}

std::map<std::string, double> Parse(const std::string& output) {
    std::map<std::string, double> values;
    std::istringstream in(output);
    std::string key;
    double value = 0;
    while (in >> key >> value)
        values[key] = value;
    return values;
}

std::string Standards(long long n) {
    return CountText(n) + " standards";
}

int Driver() {
    const std::vector<std::string> env = {"QT_QPA_PLATFORM=offscreen"};
    const std::string self = SelfPath();
    double times[2] = {0, 0};
    long peaks[2] = {0, 0};
    std::map<std::string, double> interaction;
    for (int size = 0; size < 2; ++size) {
        const long long n = size ? kLarge : kSmall;
        const fs::path folder = BenchFolder(OfficeSpec(static_cast<int>(n)));
        Note(fmt::format("main window, {} standards", n));
        std::vector<double> shown;
        for (int run = 0; run < kShowRuns; ++run) {
            const SChild child = RunChild({self, "--show", folder.string()}, env, true);
            const auto values = Parse(child.output);
            const int expected = 1000 + static_cast<int>(n - n / 7);
            if (child.exitCode != 0 || !values.contains("seconds") ||
                values.at("items") != expected) {
                FailedRow("main window shown (desktop)", Standards(n),
                          fmt::format("child exit code {}, {} items", child.exitCode,
                                      values.contains("items") ? values.at("items") : 0),
                          "-");
                return 1;
            }
            shown.push_back(values.at("seconds"));
            peaks[size] = std::max(peaks[size], static_cast<long>(values.at("peak_kb")));
        }
        times[size] = Median(shown);
        if (size) {
            Note(fmt::format("right-click and rename in the navigator, {} standards", n));
            const SChild child = RunChild({self, "--interact", folder.string()}, env, true);
            interaction = Parse(child.output);
            if (child.exitCode != 0 || !interaction.contains("rename"))
                interaction.clear();
        }
    }
    InfoRow("main window shown (desktop)", Standards(kSmall), TimeText(times[0]));
    TimeRow("main window shown (desktop)", Standards(kLarge), times[1], 1.5);
    const auto mb = [](long kb) { return static_cast<double>(kb) / 1024; };
    InfoRow("main window peak memory", Standards(kSmall), fmt::format("{:.0f} MB", mb(peaks[0])));
    Row("main window peak memory", Standards(kLarge), fmt::format("{:.0f} MB", mb(peaks[1])),
        "< 250 MB", mb(peaks[1]) < 250 ? "yes" : "no");
    GrowthRow("main window shown (desktop)", times[0], kSmall, times[1], kLarge, 1.1);
    if (interaction.empty()) {
        FailedRow("navigator right-click (desktop)", Standards(kLarge), "the child failed",
                  "< 50.0 ms");
        FailedRow("navigator rename (desktop)", Standards(kLarge), "the child failed", "< 50.0 ms");
        return 1;
    }
    TimeRow("navigator right-click (desktop)", Standards(kLarge), interaction.at("right_click"),
            0.05);
    TimeRow("navigator rename (desktop)", Standards(kLarge), interaction.at("rename"), 0.05);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && (std::string(argv[1]) == "--show" || std::string(argv[1]) == "--interact"))
        return Child(argv[2], std::string(argv[1]) == "--interact", argc, argv);
    return Driver();
}
