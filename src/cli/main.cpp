// standards-desk-cli: the scriptable face of the Standards Desk core.
#include "cli/CliCore.h"
#include "datafile/DatafileProblem.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <clocale>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    // The user's locale, like any program of the desktop: nothing the core
    // reads or writes depends on it.
    std::setlocale(LC_ALL, "");
    // Output is the same bytes everywhere: LF line ends, UTF-8.
    platform::UseBinaryStandardStreams();
    const std::vector<std::string> args = platform::CommandLineArguments(argc, argv);
    std::vector<char*> utf8Argv;
    for (const auto& arg : args)
        utf8Argv.push_back(const_cast<char*>(arg.c_str()));
    utf8Argv.push_back(nullptr);

    CLI::App app{"Standards Desk command line: clients, standards and datafiles of a shared "
                 "datafiles folder.",
                 "standards-desk-cli"};
    // A value such as "/dw/plans" stays a value on Windows too.
    app.allow_windows_style_options(false);
    SCliContext context;
    context.table = platform::IsTerminal(1);
    cli::AddAllCommands(app, context);

    try {
        app.parse(static_cast<int>(args.size()), utf8Argv.data());
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        const std::string unknown =
            cli::UnknownVerbText(app, std::vector<std::string>(args.begin() + 1, args.end()));
        if (unknown.empty())
            app.exit(e);
        else
            std::cerr << unknown << '\n';
        return 2;
    }
    try {
        if (context.action)
            context.action(std::cout);
        // A full disk or a closed pipe must not pass for success.
        if (!std::cout.flush()) {
            std::cerr << "Error writing to standard output.\n";
            return 1;
        }
    } catch (const CCliFailure& failure) {
        // A datafile that could not be changed says why: another workstation
        // is updating it, the share is read-only for this user, the disk is full.
        const std::wstring message =
            failure.code == 1 ? WithDatafileProblem(failure.message) : failure.message;
        std::cerr << platform::ToUtf8(message) << '\n';
        return failure.code;
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
