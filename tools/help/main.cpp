// Writes the generated help pages into the folder given as the argument
// (scripts/help-pages.sh passes resources/help/standards-desk).
#include "HelpPages.h"

#include "platform/Utf8.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    for (const auto& [name, text] : GeneratedHelpPages()) {
        std::ofstream file(folder / platform::ToPath(name), std::ios::binary);
        file << text;
        if (!file.flush()) {
            std::fprintf(stderr, "cannot write %s\n", platform::ToUtf8(name).c_str());
            return 1;
        }
    }
    return 0;
}
