// Creates standards in a shared datafiles folder, as one of several
// workstations at once: CreateWorker DATAFILES_DIR COUNT. The standards are
// named "W<pid>-<i>"; the exit code is 1 when any creation fails.
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/ProjectRegistry.h"

#include <cstdio>
#include <cstdlib>
#include <fmt/xchar.h>

namespace {

class CDefaultAnswers : public IPrompter {
public:
    EPromptAnswer Ask(const SPrompt& prompt) override { return prompt.defaultAnswer; }
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s DATAFILES_DIR COUNT\n", argv[0]);
        return 2;
    }
    const CVX2D_Datafiles datafiles(platform::FromUtf8(argv[1]));
    const int count = std::atoi(argv[2]);
    CDefaultAnswers prompter;
    CVX2D_ProjectRegistry registry(datafiles, prompter);
    const std::int64_t pid = platform::CurrentProcessId();
    for (int i = 0; i < count; ++i) {
        std::int32_t id = 0;
        const EProjectResult result =
            registry.CreateProject({fmt::format(L"W{}-{}", pid, i), 0, 1, 0, false}, id);
        if (result != eProjectOk) {
            std::fprintf(stderr, "standard %d of process %lld: result %d\n", i,
                         static_cast<long long>(pid), static_cast<int>(result));
            return 1;
        }
    }
    return 0;
}
