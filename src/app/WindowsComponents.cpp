#include "app/WindowsComponents.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

bool Exists(const std::wstring& path) {
    std::error_code ec;
    return !path.empty() && fs::exists(platform::ToPath(path), ec);
}

} // namespace

std::wstring CWindowsComponents::LoadOemDialogsLibrary() {
    const std::wstring name = L"VXSWDialogsOEM64.dll";
    std::wstring path = m_environment.CommonFilesFolder() + name;
    if (!Exists(path))
        path = m_environment.RegistryCommonFilesFolder() + name;
    if (!Exists(path)) {
        m_prompter.Show(L"Couldn't find dll file: \n" + name +
                            L"\n\nPlease check software installation.",
                        EPromptIcon::Stop);
        return {};
    }
    if (!m_services.loadLibrary || !m_services.loadLibrary(path)) {
        m_prompter.Show(L"Couldn't load dll file: \n" + path +
                            L"\n\nPlease check software installation.",
                        EPromptIcon::Stop);
        return {};
    }
    return path;
}

bool CWindowsComponents::Registered(bool full) const {
    const std::wstring classKey = std::wstring(L"CLSID\\") + kClassId;
    const std::wstring machineClasses = L"Software\\Classes\\";
    if (m_registry.Read(ERegistryRoot::ClassesRoot, std::wstring(kProgramId) + L"\\CLSID", L"") !=
        kClassId)
        return false;
    if (m_registry.Read(ERegistryRoot::ClassesRoot, classKey, L"") != kDescription)
        return false;
    // The check after registering also wants the program id under the
    // machine's classes; the one before it does not look there.
    if (full && m_registry.Read(ERegistryRoot::LocalMachine,
                                machineClasses + kProgramId + L"\\CLSID", L"") != kClassId)
        return false;
    return m_registry.Read(ERegistryRoot::LocalMachine, machineClasses + classKey, L"") ==
           kDescription;
}

bool CWindowsComponents::EnsureThumbnailControlRegistered() {
    const std::wstring network = m_environment.Installation().NetworkAppPath();
    const std::wstring source =
        network + L"Applications" + kPathSeparator + L"Common Files" + kPathSeparator;
    const std::wstring common = m_environment.CommonFilesFolder();
    std::error_code ec;
    for (fs::directory_iterator it(platform::ToPath(source), ec), end; !ec && it != end;
         it.increment(ec)) {
        std::error_code entryError;
        const std::wstring name = platform::FromPath(it->path().filename());
        if (!it->is_regular_file(entryError) || name.size() < 4 ||
            !EqualsNoCase(name.substr(name.size() - 4), L".ocx"))
            continue;
        fs::copy_file(it->path(), platform::ToPath(common + name), fs::copy_options::skip_existing,
                      entryError);
    }

    if (!Registered(false)) {
        const std::wstring control = common + L"DwgThumbnail.ocx";
        if (!Exists(control)) {
            m_prompter.Show(L"Couldn't find ocx file: \n" + control +
                                L"\n\nPlease check software installation.",
                            EPromptIcon::Stop);
            return false;
        }
        if (m_services.runAndWait)
            m_services.runAndWait(m_environment.System32Folder() + L"REGSVR32.EXE",
                                  {L"/s", L"\"" + control + L"\""});
    }
    return Registered(true);
}
