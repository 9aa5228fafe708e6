#include "contents/ProjectSpecs.h"

#include "datafile/Application.h"
#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "datafile/ProjectResult.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/ProjectRegistry.h"

#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>

namespace {

const std::wstring kSpecList = L"SpecList";
const std::wstring kClientSpecs = L"ClientSpecs";
const std::wstring kProjectSpecs = L"ProjectSpecs";

bool Exists(const std::wstring& path) {
    std::error_code ec;
    return std::filesystem::exists(platform::ToPath(path), ec);
}

// Reads a file that may not exist yet (nothing in it then); false only
// when it exists and cannot be read.
bool OpenIfPresent(CVX2D_IniFile& ini, const std::wstring& path) {
    ini.SetAutoSave(false);
    return !path.empty() && (ini.Open(path) == CVX2D_IniFile::eOk || !Exists(path));
}

// The checked specs' keys and names in file order; an empty value is no entry.
void CheckedEntries(const CVX2D_IniFile& specs, std::vector<std::wstring>& keys,
                    std::vector<std::wstring>& names) {
    keys.clear();
    names.clear();
    for (const auto& e : specs.Entries()) {
        if (e.section == kSpecList && !e.value.empty()) {
            keys.push_back(e.key);
            names.push_back(e.value);
        }
    }
}

} // namespace

std::wstring CVX2D_ProjectSpecs::GetErrorText(int code) {
    static constexpr std::array<const wchar_t*, 11> kTexts = {
        L"Ok",
        L"Can't create spec folder",
        L"Can't delete spec folder",
        L"Can't find spec",
        L"Can't get spec location folder",
        L"Can't open spec datafile",
        L"Error moving spec folder",
        L"Invalid name",
        L"Invalid project id",
        L"Invalid spec id",
        L"Spec already exists",
    };
    return ResultText(kTexts, code);
}

std::wstring CVX2D_ProjectSpecs::LineSpecsSection(int application) {
    return L"LineSpecs - " + ApplicationName(application);
}

std::wstring CVX2D_ProjectSpecs::GetSpecRegisterPath() const {
    return m_registry.Datafiles().File(L"SpecDatafile.ini");
}

std::wstring CVX2D_ProjectSpecs::GetSpecFilePath(std::int32_t projectId) const {
    return m_registry.StandardFile(projectId, L"Specs.ini");
}

bool CVX2D_ProjectSpecs::OpenRegister(CVX2D_IniFile& ini) const {
    return OpenIfPresent(ini, GetSpecRegisterPath());
}

ESpecResult CVX2D_ProjectSpecs::ResolveSpecFile(std::int32_t projectId, std::wstring& path) const {
    path = GetSpecFilePath(projectId);
    return path.empty() ? eSpecCantOpenDatafile : eSpecOk;
}

ESpecResult CVX2D_ProjectSpecs::GetSpecRegister(std::vector<SSpecInfo>& specs) const {
    specs.clear();
    CVX2D_IniFile ini;
    if (!OpenRegister(ini))
        return eSpecCantOpenDatafile;
    specs = SpecsOf(ini);
    return eSpecOk;
}

std::vector<SSpecInfo> CVX2D_ProjectSpecs::SpecsOf(const CVX2D_IniFile& ini) {
    std::vector<SSpecInfo> specs;
    std::map<std::wstring, std::pair<ESpecScope, std::int32_t>> scopes;
    for (const auto& e : ini.Entries()) {
        // A spec named in both lists belongs to the standard, the narrower scope.
        if (e.section == kClientSpecs && !e.value.empty())
            scopes.try_emplace(e.key, eSpecClient, ParseClientKey(e.value));
        else if (e.section == kProjectSpecs && !e.value.empty())
            scopes.insert_or_assign(e.key, std::pair{eSpecProject, ParseProjectKey(e.value)});
    }
    for (const auto& e : ini.Entries()) {
        if (e.section != kSpecList || e.value.empty())
            continue;
        SSpecInfo spec{ParseSpecKey(e.key), e.value, eSpecCommon, 0};
        if (const auto it = scopes.find(e.key); it != scopes.end())
            std::tie(spec.scope, spec.ownerId) = it->second;
        specs.push_back(std::move(spec));
    }
    return specs;
}

ESpecResult CVX2D_ProjectSpecs::CheckSpec(std::int32_t projectId, std::int32_t specId) const {
    if (projectId < 1)
        return eSpecInvalidProjectId;
    if (specId < 1)
        return eSpecInvalidId;
    std::vector<SSpecInfo> specs;
    if (const ESpecResult read = GetSpecRegister(specs); read != eSpecOk)
        return read;
    const SSpecInfo* found = nullptr;
    for (const auto& spec : specs) {
        if (spec.id == specId) {
            found = &spec;
            break;
        }
    }
    if (!found)
        return eSpecCantFind;
    // Another standard's spec, or another client's, lives in that owner's
    // folder and goes with it: it is not this standard's to use.
    if (found->scope == eSpecProject && found->ownerId != projectId)
        return eSpecCantFind;
    if (found->scope == eSpecClient) {
        std::int32_t clientId = 0;
        std::wstring clientName;
        if (!CVX2D_ClientRegistry(m_registry.Datafiles())
                 .FindClientOfProject(projectId, clientId, clientName) ||
            clientId != found->ownerId)
            return eSpecCantFind;
    }

    std::wstring path;
    if (const ESpecResult resolved = ResolveSpecFile(projectId, path); resolved != eSpecOk)
        return resolved;
    return UpdateDatafile(path,
                          [&](CVX2D_IniFile& ini) {
                              ini.SetSection(kSpecList);
                              ini.SetString(MakeSpecKey(specId), found->name);
                              return true;
                          })
               ? eSpecOk
               : eSpecCantOpenDatafile;
}

ESpecResult CVX2D_ProjectSpecs::UncheckSpec(std::int32_t projectId, std::int32_t specId) const {
    if (projectId < 1)
        return eSpecInvalidProjectId;
    if (specId < 1)
        return eSpecInvalidId;
    std::wstring path;
    if (const ESpecResult resolved = ResolveSpecFile(projectId, path); resolved != eSpecOk)
        return resolved;
    bool checked = true;
    const bool saved = UpdateDatafile(path, [&](CVX2D_IniFile& ini) {
        checked = !GetCheckedSpecName(ini, specId).empty();
        if (!checked)
            return false;
        ini.SetSection(kSpecList);
        ini.DeleteKey(MakeSpecKey(specId));
        return true;
    });
    if (!checked)
        return eSpecCantFind;
    return saved ? eSpecOk : eSpecCantOpenDatafile;
}

ESpecResult CVX2D_ProjectSpecs::GetCheckedSpecs(std::int32_t projectId,
                                                std::vector<std::int32_t>& ids) const {
    std::vector<std::wstring> names;
    return GetCheckedSpecs(projectId, ids, names);
}

ESpecResult CVX2D_ProjectSpecs::GetCheckedSpecs(std::int32_t projectId,
                                                std::vector<std::int32_t>& ids,
                                                std::vector<std::wstring>& names) const {
    ids.clear();
    names.clear();
    if (projectId < 1)
        return eSpecInvalidProjectId;
    std::wstring path;
    if (const ESpecResult resolved = ResolveSpecFile(projectId, path); resolved != eSpecOk)
        return resolved;
    CVX2D_IniFile ini;
    if (!OpenIfPresent(ini, path))
        return eSpecCantOpenDatafile;
    std::vector<std::wstring> keys;
    CheckedEntries(ini, keys, names);
    // A damaged key stays in the list as id 0, so that nothing checked is hidden.
    for (const auto& key : keys)
        ids.push_back(ParseSpecKey(key));
    return eSpecOk;
}

std::wstring CVX2D_ProjectSpecs::GetCheckedSpecName(CVX2D_IniFile& specs, std::int32_t specId) {
    if (specId < 1)
        return {};
    const std::wstring current = specs.GetSection();
    specs.SetSection(kSpecList);
    std::wstring name = specs.String(MakeSpecKey(specId));
    specs.SetSection(current);
    return name;
}

ESpecResult
CVX2D_ProjectSpecs::WriteSpecRegister(const std::vector<SSpecOwner>& clientSpecs,
                                      const std::vector<SSpecOwner>& projectSpecs) const {
    std::set<std::int32_t> seen;
    for (const auto* list : {&clientSpecs, &projectSpecs}) {
        for (const auto& entry : *list) {
            if (entry.specId < 1)
                return eSpecInvalidId;
            if (entry.ownerId < 1)
                return list == &projectSpecs ? eSpecInvalidProjectId : eSpecCantGetLocationFolder;
            if (!seen.insert(entry.specId).second)
                return eSpecAlreadyExists;
        }
    }
    const std::wstring path = GetSpecRegisterPath();
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (path.empty() || ini.OpenForUpdate(path) != CVX2D_IniFile::eOk)
        return eSpecCantOpenDatafile;
    ini.SetSection(kSpecList);
    for (std::int32_t specId : seen) {
        if (ini.String(MakeSpecKey(specId)).empty())
            return eSpecCantFind;
    }
    ini.DeleteSection(kClientSpecs);
    ini.DeleteSection(kProjectSpecs);
    ini.SetSection(kClientSpecs);
    for (const auto& entry : clientSpecs)
        ini.SetString(MakeSpecKey(entry.specId), MakeClientKey(entry.ownerId));
    ini.SetSection(kProjectSpecs);
    for (const auto& entry : projectSpecs)
        ini.SetString(MakeSpecKey(entry.specId), MakeProjectKey(entry.ownerId));
    return ini.Save() == CVX2D_IniFile::eOk ? eSpecOk : eSpecCantOpenDatafile;
}

// The standard's "Specs.ini" for one line's list of one application, after
// the arguments are checked.
ESpecResult CVX2D_ProjectSpecs::ResolveLineSpecFile(std::int32_t projectId, std::int32_t lineId,
                                                    int application, std::wstring& path) const {
    if (projectId < 1)
        return eSpecInvalidProjectId;
    if (lineId < 1 || !IsApplication(application))
        return eSpecInvalidArgument;
    return ResolveSpecFile(projectId, path);
}

ESpecResult CVX2D_ProjectSpecs::CreateLineSpecList(std::int32_t projectId, std::int32_t lineId,
                                                   int application) const {
    std::wstring path;
    if (const ESpecResult resolved = ResolveLineSpecFile(projectId, lineId, application, path);
        resolved != eSpecOk)
        return resolved;
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (ini.OpenForUpdate(path) != CVX2D_IniFile::eOk)
        return eSpecCantOpenDatafile;
    const std::wstring lineKey = MakeLineKey(lineId);
    ini.SetSection(LineSpecsSection(application));
    if (!ini.String(lineKey).empty())
        return eSpecOk; // the line's list may have been edited: keep it
    std::vector<std::wstring> keys, names;
    CheckedEntries(ini, keys, names);
    std::wstring list;
    for (const auto& key : keys)
        list += (list.empty() ? L"" : L",") + key;
    ini.SetString(lineKey, list);
    return ini.Save() == CVX2D_IniFile::eOk ? eSpecOk : eSpecCantOpenDatafile;
}

ESpecResult CVX2D_ProjectSpecs::GetLineSpecList(std::int32_t projectId, std::int32_t lineId,
                                                int application,
                                                std::vector<std::int32_t>& specIds) const {
    specIds.clear();
    std::wstring path;
    if (const ESpecResult resolved = ResolveLineSpecFile(projectId, lineId, application, path);
        resolved != eSpecOk)
        return resolved;
    CVX2D_IniFile ini;
    if (!OpenIfPresent(ini, path))
        return eSpecCantOpenDatafile;
    ini.SetSection(LineSpecsSection(application));
    const std::wstring list = ini.String(MakeLineKey(lineId));
    std::size_t start = 0;
    while (start < list.size()) {
        std::size_t end = list.find(L',', start);
        if (end == std::wstring::npos)
            end = list.size();
        specIds.push_back(ParseSpecKey(list.substr(start, end - start)));
        start = end + 1;
    }
    return eSpecOk;
}
