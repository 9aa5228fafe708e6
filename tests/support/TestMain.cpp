// The core tests' main: the process takes the user's locale from the
// environment, as the desktop program's toolkit does, so that a run under
// LC_ALL=de_DE.UTF-8 checks that no number depends on it.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <locale>

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    try {
        std::locale::global(std::locale(""));
    } catch (const std::runtime_error&) {
        // A locale the C++ library does not know: the C one above is enough.
    }
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
#ifdef _WIN32
    // Under Wine a test process that started threads or processes now and
    // then fails to end after main returns: end it here, its output written.
    std::fflush(nullptr);
    std::_Exit(result);
#endif
    return result;
}
