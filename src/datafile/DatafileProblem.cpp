#include "datafile/DatafileProblem.h"

namespace {

thread_local SDatafileProblem t_problem;

} // namespace

void NoteDatafileProblem(EDatafileProblem kind, const std::wstring& path,
                         const std::wstring& detail) {
    t_problem = {kind, path, detail};
}

void ClearDatafileProblem() {
    t_problem = {};
}

const SDatafileProblem& LastDatafileProblem() {
    return t_problem;
}

std::wstring DatafileProblemText() {
    const std::wstring& path = t_problem.path;
    switch (t_problem.kind) {
    case EDatafileProblem::None:
        break;
    case EDatafileProblem::Busy:
        return L"Another workstation is updating '" + path + L"'. Try again when it has finished.";
    case EDatafileProblem::ReadOnly:
        return L"The datafiles folder is read-only for this user: '" + path +
               L"' cannot be changed.";
    case EDatafileProblem::Missing:
        return L"The folder of '" + path + L"' does not exist or cannot be reached.";
    case EDatafileProblem::NotPermitted:
        return L"This user may not change '" + path + L"'.";
    case EDatafileProblem::ReadFailed:
        return L"'" + path + L"' could not be read" +
               (t_problem.detail.empty() ? L"." : L": " + t_problem.detail + L".");
    case EDatafileProblem::WriteFailed:
        return L"'" + path + L"' could not be written" +
               (t_problem.detail.empty() ? L"." : L": " + t_problem.detail + L".");
    }
    return L"";
}

std::wstring WithDatafileProblem(const std::wstring& message) {
    const std::wstring problem = DatafileProblemText();
    if (problem.empty() || message.find(problem) != std::wstring::npos)
        return message;
    return message + L"\n\n" + problem;
}
