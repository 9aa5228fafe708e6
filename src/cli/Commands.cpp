#include "cli/Commands.h"

#include "cli/CliPrompter.h"
#include "datafile/IniFile.h"
#include "datafile/Names.h"
#include "datafile/Text.h"
#include "platform/Installation.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/Datafiles.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"
#include "store/Templates.h"

#include <fmt/xchar.h>
#include <functional>
#include <map>

CCliFailure::CCliFailure(std::wstring text, int exitCode)
    : std::runtime_error(platform::ToUtf8(text)), message(std::move(text)), code(exitCode) {}

namespace cli {

namespace {

// Everything a command needs to reach the datafiles folder.
struct SCore {
    explicit SCore(const SCliOptions& options)
        : registry(MakeSystemRegistry()), installation(*registry, options.datafiles),
          datafiles(installation.DatafilesPath()), prompter(options.yes),
          projects(datafiles, prompter), clients(datafiles) {
        if (!datafiles.IsKnown())
            throw CCliFailure(L"No datafiles folder is known.\n\nGive one with --datafiles DIR or "
                              L"set \"DatafilesPath\" in the installation values.");
    }
    std::unique_ptr<IRegistry> registry;
    CInstallation installation;
    CVX2D_Datafiles datafiles;
    CCliPrompter prompter;
    CVX2D_ProjectRegistry projects;
    CVX2D_ClientRegistry clients;

    // The standard's name for messages, or its id when it has none.
    std::wstring NameOf(std::int32_t id) const {
        const std::wstring name = projects.GetProjectName(id, true, true);
        return name.empty() ? fmt::format(L"{}", id) : name;
    }
};

void Check(EProjectResult result, const std::wstring& what) {
    if (result != eProjectOk)
        throw CCliFailure(what + L"\n\n" + ProjectResultText(result));
}

void OpenExisting(CVX2D_IniFile& ini, const std::wstring& file) {
    ini.SetAutoSave(false);
    if (ini.Open(file) != CVX2D_IniFile::eOk)
        throw CCliFailure(fmt::format(L"Error opening datafile '{}'.", file));
}

void OpenForChange(CVX2D_IniFile& ini, const std::wstring& file) {
    ini.SetAutoSave(false);
    if (ini.OpenForUpdate(file) != CVX2D_IniFile::eOk)
        throw CCliFailure(fmt::format(L"Error opening datafile '{}' for update.", file));
}

void SaveChanged(CVX2D_IniFile& ini) {
    if (ini.Save() != CVX2D_IniFile::eOk)
        throw CCliFailure(fmt::format(L"Error saving datafile '{}'.", ini.GetPath()));
}

std::wstring JoinIds(const std::vector<std::int32_t>& ids) {
    std::wstring text;
    for (std::size_t i = 0; i < ids.size(); ++i)
        text += (i ? L"," : L"") + fmt::format(L"{}", ids[i]);
    return text;
}

} // namespace

COutput DatafileDump(const std::wstring& file) {
    CVX2D_IniFile ini;
    OpenExisting(ini, file);
    COutput output({{"section"}, {"key"}, {"value"}});
    for (const auto& e : ini.Entries())
        output.Add({e.section, e.key, e.value});
    return output;
}

COutput DatafileGet(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                    const std::wstring& def) {
    CVX2D_IniFile ini;
    OpenExisting(ini, file);
    ini.SetSection(section);
    COutput output({{"value"}});
    output.Add({ini.String(key, def)});
    return output;
}

void DatafileSet(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                 const std::wstring& value) {
    for (const std::wstring* text : {&section, &key, &value}) {
        if (!IsOneByteText(*text) || text->find(L'\n') != std::wstring::npos)
            throw CCliFailure(fmt::format(L"Error writing datafile '{}'.\n\n'{}' holds a character "
                                          L"that a datafile cannot store.",
                                          file, *text));
    }
    CVX2D_IniFile ini;
    OpenForChange(ini, file);
    ini.SetSection(section);
    ini.SetString(key, value);
    SaveChanged(ini);
}

void DatafileDeleteKey(const std::wstring& file, const std::wstring& section, const std::wstring& key) {
    CVX2D_IniFile ini;
    OpenForChange(ini, file);
    ini.SetSection(section);
    ini.DeleteKey(key);
    SaveChanged(ini);
}

void DatafileDeleteSection(const std::wstring& file, const std::wstring& section) {
    CVX2D_IniFile ini;
    OpenForChange(ini, file);
    ini.DeleteSection(section);
    SaveChanged(ini);
}

COutput ClientList(const SCliOptions& options) {
    SCore core(options);
    COutput output({{"id"}, {"name"}, {"standards"}});
    for (const auto& client : core.clients.ListClients())
        output.Add({client.id, client.name, JoinIds(client.projectIds)});
    return output;
}

COutput ClientCreate(const SCliOptions& options) {
    SCore core(options);
    std::int32_t id = 0;
    std::wstring name;
    if (!core.clients.CreateClient(id, name))
        throw CCliFailure(L"Error creating a new client");
    COutput output({{"id"}, {"name"}});
    output.Add({id, name});
    return output;
}

void ClientRename(const SCliOptions& options, std::int32_t id, const std::wstring& name) {
    SCore core(options);
    const std::wstring oldName = core.clients.GetClientName(id);
    if (!core.clients.RenameClient(id, name)) {
        std::wstring text = fmt::format(L"Error renaming client from '{}' to '{}'.", oldName, name);
        if (!IsValidName(name))
            text += L"\n\nInvalid name";
        throw CCliFailure(text);
    }
}

void ClientDelete(const SCliOptions& options, std::int32_t id) {
    SCore core(options);
    const std::wstring name = core.clients.GetClientName(id);
    if (name.empty() || !core.clients.DeleteClient(id))
        throw CCliFailure(fmt::format(L"Error deleting client '{}'", name.empty() ? fmt::format(L"{}", id) : name));
}

COutput StandardList(const SCliOptions& options, bool withDeleted) {
    SCore core(options);
    std::vector<SProjectInfo> projects;
    Check(core.projects.ListProjects(true, withDeleted, projects), L"Error listing standards.");
    std::map<std::int32_t, std::int32_t> clientOf;
    for (const auto& client : core.clients.ListClients()) {
        for (std::int32_t id : client.projectIds)
            clientOf.try_emplace(id, client.id);
    }
    COutput output({{"id"}, {"state"}, {"client_id"}, {"name"}});
    for (const auto& project : projects) {
        const auto it = clientOf.find(project.id);
        output.Add({project.id, std::wstring(project.deleted ? L"deleted" : L"active"),
                    std::int64_t{it == clientOf.end() ? 0 : it->second}, project.name});
    }
    return output;
}

COutput StandardDefaultName(const SCliOptions& options) {
    SCore core(options);
    COutput output({{"name"}});
    output.Add({core.projects.GetDefaultProjectName()});
    return output;
}

COutput StandardCreate(const SCliOptions& options, const std::wstring& name, const std::string& units,
                       std::int32_t clientId, bool oldFormat) {
    SCore core(options);
    const std::wstring what = fmt::format(L"Error creating new standard '{}'", name);
    if (clientId != 0 && core.clients.GetClientName(clientId).empty())
        throw CCliFailure(fmt::format(L"{}\n\nThere is no client {}.", what, clientId));
    // A datafiles folder set up by hand may lack the templates: bring the
    // shipped ones in, never touching those that are there.
    SeedTemplateFolders(core.datafiles, CInstallation::ShippedDataFolder() + L"templates");
    SNewProject project;
    project.name = name;
    project.units = units == "imperial" ? 1 : 0;
    project.templateNumber = units == "imperial" ? 2 : 1;
    project.clientId = clientId;
    project.oldFormat = oldFormat;
    std::int32_t id = 0;
    Check(core.projects.CreateProject(project, id), what);
    COutput output({{"id"}, {"name"}});
    output.Add({id, core.projects.GetProjectName(id, true, false)});
    return output;
}

COutput StandardCopy(const SCliOptions& options, std::int32_t id) {
    SCore core(options);
    std::int32_t newId = 0;
    std::wstring newName;
    Check(core.projects.CopyProject(id, newId, newName),
          fmt::format(L"Error copying standard '{}'", core.NameOf(id)));
    COutput output({{"id"}, {"name"}});
    output.Add({newId, newName});
    return output;
}

void StandardRename(const SCliOptions& options, std::int32_t id, const std::wstring& name) {
    SCore core(options);
    Check(core.projects.RenameProject(id, name),
          fmt::format(L"Error renaming project from '{}' to '{}'.",
                      core.projects.GetProjectName(id, true, true), name));
}

void StandardDelete(const SCliOptions& options, std::int32_t id) {
    SCore core(options);
    Check(core.projects.DeleteProject(id),
          fmt::format(L"Error marking standard '{}' as deleted.", core.NameOf(id)));
}

void StandardRecover(const SCliOptions& options, std::int32_t id) {
    SCore core(options);
    Check(core.projects.RecoverProject(id),
          fmt::format(L"Error recovering standard '{}'.", core.NameOf(id)));
}

void StandardPurge(const SCliOptions& options, std::int32_t id) {
    SCore core(options);
    std::int32_t clientId = 0;
    std::wstring clientName;
    core.clients.FindClientOfProject(id, clientId, clientName);
    Check(core.projects.PurgeProject(id), fmt::format(L"Error purging standard '{}'.", core.NameOf(id)));
    // A purge that could not delete the folder keeps the standard as deleted;
    // only a standard that is really gone leaves its client.
    if (clientId != 0 && core.projects.GetProjectName(id, true, true).empty())
        core.clients.RemoveProjectFromClient(clientId, id);
}

void StandardMove(const SCliOptions& options, std::int32_t id, std::int32_t clientId) {
    SCore core(options);
    if (id < 1)
        throw CCliFailure(L"Error moving project.\n\n" + ProjectResultText(eProjectInvalidId));
    if (core.projects.GetProjectName(id, true, true).empty())
        throw CCliFailure(L"Error moving project.\n\n" + ProjectResultText(eProjectCantFind));
    if (clientId != 0 && core.clients.GetClientName(clientId).empty())
        throw CCliFailure(fmt::format(L"Error moving project.\n\nThere is no client {}.", clientId));
    std::int32_t fromClient = 0;
    std::wstring fromName;
    core.clients.FindClientOfProject(id, fromClient, fromName);
    if (!core.clients.MoveProjectToClient(id, fromClient, clientId))
        throw CCliFailure(L"Error moving project.");
}

COutput StandardFolder(const SCliOptions& options, std::int32_t id) {
    SCore core(options);
    std::wstring folder;
    Check(core.projects.GetProjectFolder(id, folder),
          fmt::format(L"Error finding the folder of standard '{}'.", core.NameOf(id)));
    COutput output({{"folder"}});
    output.Add({folder});
    return output;
}

void RegistryCheck(const SCliOptions& options) {
    SCore core(options);
    Check(core.projects.CheckProjectRegistry(), L"Error checking the standard registry.");
}

namespace {

struct SGeneralField {
    const char* name;
    std::function<CField(const CVX2D_GeneralSettings&)> get;
    // Empty for a field that cannot be set.
    std::function<void(CVX2D_GeneralSettings&, const std::wstring&)> set;
};

int ParseIntField(const std::string& field, const std::wstring& text) {
    std::size_t used = 0;
    try {
        const long long value = std::stoll(text, &used);
        if (used == text.size() && value >= INT32_MIN && value <= INT32_MAX)
            return static_cast<int>(value);
    } catch (const std::exception&) {
    }
    throw CCliFailure(fmt::format(L"'{}' is not a whole number for {}.", text, platform::FromUtf8(field)), 2);
}

const std::vector<SGeneralField>& GeneralFields() {
    using G = CVX2D_GeneralSettings;
    auto intField = [](const char* name, int G::*member) {
        return SGeneralField{name, [member](const G& g) { return CField{std::int64_t{g.*member}}; },
                             [name, member](G& g, const std::wstring& v) { g.*member = ParseIntField(name, v); }};
    };
    auto textField = [](const char* name, std::wstring G::*member) {
        return SGeneralField{name, [member](const G& g) { return CField{g.*member}; },
                             [member](G& g, const std::wstring& v) { g.*member = v; }};
    };
    auto drawingsField = [](const char* name, int application) {
        return SGeneralField{name,
                             [application](const G& g) { return CField{g.GetDrawingsLocation(application)}; },
                             [application](G& g, const std::wstring& v) { g.SetDrawingsLocation(application, v); }};
    };
    static const std::vector<SGeneralField> fields = {
        intField("working_units", &G::m_nWorkingUnits),
        intField("displayed_units", &G::m_nDisplayedUnits),
        intField("rating_format", &G::m_nRatingsFormat),
        {"guid", [](const G& g) { return CField{GuidToText(g.m_guid)}; }, {}},
        intField("version", &G::m_nProjectVersion),
        textField("borders_folder", &G::m_strBordersLocation),
        textField("templates_folder", &G::m_strTemplatesLocation),
        textField("libraries_folder", &G::m_strLibrariesLocation),
        {"local_line_ini", [](const G& g) { return CField{std::int64_t{g.m_bLocalLineIni ? 1 : 0}}; },
         [](G& g, const std::wstring& v) { g.m_bLocalLineIni = ParseIntField("local_line_ini", v) != 0; }},
        textField("local_line_ini_path", &G::m_strLocalLineIniPath),
        drawingsField("drawings_electric", 1),
        drawingsField("drawings_pid", 2),
        drawingsField("drawings_isometric", 3),
        drawingsField("drawings_ortho", 4),
    };
    return fields;
}

void LoadGeneral(SCore& core, CVX2D_GeneralSettings& general, std::int32_t id) {
    if (id < 1)
        throw CCliFailure(L"Error reading general settings.\n\n" + ProjectResultText(eProjectInvalidId));
    std::wstring folder;
    Check(core.projects.GetProjectFolder(id, folder),
          fmt::format(L"Error reading general settings of standard '{}'.", core.NameOf(id)));
    if (!general.Load(core.projects, id))
        throw CCliFailure(fmt::format(L"Error reading general settings of standard '{}'.", core.NameOf(id)));
}

} // namespace

std::string GeneralFieldNames() {
    std::string names;
    for (const auto& field : GeneralFields())
        names += (names.empty() ? "" : ", ") + std::string(field.name);
    return names;
}

COutput GeneralShow(const SCliOptions& options, std::int32_t id) {
    SCore core(options);
    CVX2D_GeneralSettings general;
    LoadGeneral(core, general, id);
    COutput output({{"field"}, {"value"}});
    for (const auto& field : GeneralFields())
        output.Add({platform::FromUtf8(field.name), field.get(general)});
    return output;
}

void GeneralSet(const SCliOptions& options, std::int32_t id, const std::string& fieldName,
                const std::wstring& value) {
    const SGeneralField* field = nullptr;
    for (const auto& candidate : GeneralFields()) {
        if (fieldName == candidate.name)
            field = &candidate;
    }
    if (!field)
        throw CCliFailure(platform::FromUtf8("Unknown field '" + fieldName + "'. Fields: " + GeneralFieldNames()), 2);
    if (!field->set)
        throw CCliFailure(platform::FromUtf8("The field '" + fieldName + "' cannot be changed."), 2);
    if (!IsOneByteText(value) || value.find(L'\n') != std::wstring::npos)
        throw CCliFailure(fmt::format(L"'{}' holds a character that a datafile cannot store.", value));
    SCore core(options);
    CVX2D_GeneralSettings general;
    LoadGeneral(core, general, id);
    field->set(general, value);
    if (!general.Save())
        throw CCliFailure(fmt::format(L"Error saving general settings of standard '{}'.", core.NameOf(id)));
}

} // namespace cli
