#include "datafile/Ids.h"

#include "datafile/IniFile.h"
#include "datafile/Text.h"

#include <fmt/xchar.h>

namespace {

std::int32_t ParseAfter(const std::wstring& text, std::wstring_view prefix) {
    const auto at = text.find(prefix);
    if (at == std::wstring::npos)
        return 0;
    return WToL(std::wstring_view(text).substr(at + prefix.size()));
}

} // namespace

std::wstring MakeClientKey(std::int32_t id) {
    return fmt::format(L"VX2D_CLIENT_{}", id);
}
std::wstring MakeProjectKey(std::int32_t id) {
    return fmt::format(L"VX2D_PRJ_{}", id);
}
std::wstring MakeLineKey(std::int32_t id) {
    return fmt::format(L"VX2D_LINE_{}", id);
}
std::wstring MakeSpecKey(std::int32_t id) {
    return fmt::format(L"VX2D_SPEC_{}", id);
}

std::int32_t ParseClientKey(const std::wstring& text) {
    return ParseAfter(text, L"VX2D_CLIENT_");
}
std::int32_t ParseProjectKey(const std::wstring& text) {
    return ParseAfter(ToUpper(text), L"VX2D_PRJ_");
}
std::int32_t ParseLineKey(const std::wstring& text) {
    return ParseAfter(text, L"VX2D_LINE_");
}
std::int32_t ParseSpecKey(const std::wstring& text) {
    return ParseAfter(text, L"VX2D_SPEC_");
}

std::wstring MakeProjectLabel(std::int32_t id, const std::wstring& name) {
    return MakeProjectKey(id) + L" - " + name;
}

std::wstring MakeClientProjectListSection(std::int32_t clientId) {
    return fmt::format(L"ProjectList - {}", clientId);
}

std::int32_t AllocateId(CVX2D_IniFile& registry, const std::wstring& counterKey) {
    registry.SetSection(L"General");
    const std::int32_t id = registry.Long(counterKey, 0) + 1;
    registry.SetLong(counterKey, id);
    return id;
}

std::wstring MakeDefaultProjectName(CVX2D_IniFile& projectDatafile) {
    const std::wstring current = projectDatafile.GetSection();
    projectDatafile.SetSection(L"General");
    std::int32_t number = projectDatafile.Long(L"LastProjectId", 0) + 1;
    std::wstring name;
    for (;; ++number) {
        name = fmt::format(L"Standard {}", number);
        projectDatafile.SetSection(L"ProjectList");
        if (!projectDatafile.FindKeyByValue(name).empty())
            continue;
        projectDatafile.SetSection(L"DeletedProjects");
        if (!projectDatafile.FindKeyByValue(name).empty())
            continue;
        break;
    }
    projectDatafile.SetSection(current);
    return name;
}

std::wstring MakeDefaultClientName(std::int32_t clientId) {
    return fmt::format(L"Client {}", clientId);
}

std::wstring MakeCopyName(const std::wstring& sourceName) {
    return L"Copy of " + sourceName;
}
