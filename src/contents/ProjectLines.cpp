#include "contents/ProjectLines.h"

#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "datafile/Names.h"
#include "datafile/ProjectResult.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/LineCounter.h"
#include "store/ProjectRegistry.h"

#include <array>
#include <filesystem>
#include <fmt/xchar.h>

namespace {

const std::wstring kLineList = L"LineList";
const std::wstring kDeletedLines = L"DeletedLines";
const std::wstring kLastLineId = L"LastLineId";

// Whether a line of `section`, other than the one under `exceptKey`, is called `name`.
bool NameTaken(const CVX2D_IniFile& lines, const std::wstring& section, const std::wstring& name,
               const std::wstring& exceptKey = {}) {
    for (const auto& e : lines.Entries()) {
        if (e.section == section && e.value == name && e.key != exceptKey)
            return true;
    }
    return false;
}

bool KeyUsed(CVX2D_IniFile& lines, const std::wstring& key) {
    for (const auto* section : {&kLineList, &kDeletedLines}) {
        lines.SetSection(*section);
        if (!lines.String(key).empty())
            return true;
    }
    return false;
}

} // namespace

void SLineList::Clear() {
    ids.clear();
    names.clear();
    deleted.clear();
}

void SLineList::Add(std::int32_t id, const std::wstring& name, bool isDeleted) {
    ids.push_back(id);
    names.push_back(name);
    deleted.push_back(isDeleted);
}

std::wstring CVX2D_ProjectLines::GetErrorText(int code) {
    static constexpr std::array<const wchar_t*, 9> kTexts = {
        L"Ok",
        L"Can't create new line",
        L"Can't find line",
        L"Can't open line datafile",
        L"Invalid name",
        L"Invalid line id",
        L"Invalid project id",
        L"Line already exists",
        L"Line is deleted",
    };
    return ResultText(kTexts, code);
}

std::int32_t CVX2D_ProjectLines::ParseLineId(const std::wstring& key) {
    return ParseLineKey(key);
}

std::wstring CVX2D_ProjectLines::GetLineFilePath(std::int32_t projectId) const {
    return m_registry.StandardFile(projectId, L"Lines.ini");
}

ELineResult CVX2D_ProjectLines::ResolveLineFile(std::int32_t projectId, std::wstring& path) const {
    path.clear();
    if (projectId < 1)
        return eLineInvalidProjectId;
    path = GetLineFilePath(projectId);
    return path.empty() ? eLineCantOpenDatafile : eLineOk;
}

ELineResult CVX2D_ProjectLines::GetLines(std::int32_t projectId, SLineList& lines, bool withDeleted,
                                         bool eval) const {
    lines.Clear();
    if (projectId < 1)
        return eLineInvalidProjectId;
    if (eval) {
        lines.Add(1, L"Eval", false);
        return eLineOk;
    }
    std::wstring path;
    if (const ELineResult resolved = ResolveLineFile(projectId, path); resolved != eLineOk)
        return resolved;
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (ini.Open(path) != CVX2D_IniFile::eOk) {
        std::error_code ec;
        // A standard that never had a line has no "Lines.ini" yet.
        return std::filesystem::exists(platform::ToPath(path), ec) ? eLineCantOpenDatafile
                                                                   : eLineOk;
    }
    for (const bool deleted : {false, true}) {
        if (deleted && !withDeleted)
            break;
        const std::wstring& section = deleted ? kDeletedLines : kLineList;
        for (const auto& e : ini.Entries()) {
            const std::int32_t id = ParseLineId(e.key);
            // An empty value is no entry at all; a key without a line id is not a line.
            if (e.section == section && id > 0 && !e.value.empty())
                lines.Add(id, e.value, deleted);
        }
    }
    return eLineOk;
}

ELineResult CVX2D_ProjectLines::CreateLine(std::int32_t projectId, std::int32_t& lineId,
                                           std::wstring& name) const {
    return Create(projectId, nullptr, lineId, name);
}

ELineResult CVX2D_ProjectLines::CreateLine(std::int32_t projectId, const std::wstring& wantedName,
                                           std::int32_t& lineId, std::wstring& name) const {
    return Create(projectId, &wantedName, lineId, name);
}

ELineResult CVX2D_ProjectLines::Create(std::int32_t projectId, const std::wstring* wantedName,
                                       std::int32_t& lineId, std::wstring& name) const {
    lineId = 0;
    name.clear();
    if (projectId < 1)
        return eLineInvalidProjectId;
    if (wantedName && !IsValidName(*wantedName))
        return eLineInvalidName;
    std::wstring path;
    if (const ELineResult resolved = ResolveLineFile(projectId, path); resolved != eLineOk)
        return resolved;
    const std::wstring counterPath = m_registry.Datafiles().LineDatafile();
    if (counterPath.empty())
        return eLineCantOpenDatafile;

    // The standard's file is locked first and the counter second, the same
    // order as everywhere else, so two workstations never wait on each other.
    CVX2D_IniFile lines;
    lines.SetAutoSave(false);
    if (lines.OpenForUpdate(path) != CVX2D_IniFile::eOk)
        return eLineCantOpenDatafile;
    std::wstring newName;
    if (wantedName) {
        newName = TrimBlanks(*wantedName);
        if (NameTaken(lines, kLineList, newName))
            return eLineAlreadyExists;
    }

    CVX2D_IniFile counter;
    counter.SetAutoSave(false);
    if (counter.OpenForUpdate(counterPath) != CVX2D_IniFile::eOk)
        return eLineCantOpenDatafile;
    // A counter left behind (lines brought in by hand) must not hand out an
    // id this standard already uses.
    std::int32_t id = 0;
    do {
        id = AllocateId(counter, kLastLineId);
    } while (KeyUsed(lines, MakeLineKey(id)));
    // The id is taken before the line is stored: a failure later leaves a
    // gap in the ids, never a duplicate.
    if (counter.Save() != CVX2D_IniFile::eOk)
        return eLineCantCreate;
    counter.Unlock();

    if (!wantedName) {
        for (std::int32_t number = id;; ++number) {
            newName = fmt::format(L"Line {}", number);
            if (!NameTaken(lines, kLineList, newName) && !NameTaken(lines, kDeletedLines, newName))
                break;
        }
    }
    lines.SetSection(kLineList);
    lines.SetString(MakeLineKey(id), newName);
    if (lines.Save() != CVX2D_IniFile::eOk)
        return eLineCantCreate;
    lineId = id;
    name = newName;
    return eLineOk;
}

ELineResult CVX2D_ProjectLines::OpenForUpdate(std::int32_t projectId, CVX2D_IniFile& lines) const {
    std::wstring path;
    if (const ELineResult resolved = ResolveLineFile(projectId, path); resolved != eLineOk)
        return resolved;
    lines.SetAutoSave(false);
    return lines.OpenForUpdate(path) == CVX2D_IniFile::eOk ? eLineOk : eLineCantOpenDatafile;
}

ELineResult CVX2D_ProjectLines::UpdateLine(std::int32_t projectId, std::int32_t lineId,
                                           const CLineChange& change) const {
    if (projectId < 1)
        return eLineInvalidProjectId;
    if (lineId < 1)
        return eLineInvalidId;
    CVX2D_IniFile lines;
    if (const ELineResult opened = OpenForUpdate(projectId, lines); opened != eLineOk)
        return opened;
    if (const ELineResult changed = change(lines, MakeLineKey(lineId)); changed != eLineOk)
        return changed;
    return lines.Save() == CVX2D_IniFile::eOk ? eLineOk : eLineCantOpenDatafile;
}

ELineResult CVX2D_ProjectLines::DeleteLine(std::int32_t projectId, std::int32_t lineId) const {
    return UpdateLine(projectId, lineId, [](CVX2D_IniFile& lines, const std::wstring& key) {
        lines.SetSection(kLineList);
        const std::wstring name = lines.String(key);
        if (name.empty())
            return eLineCantFind;
        lines.DeleteKey(key);
        lines.SetSection(kDeletedLines);
        lines.SetString(key, name);
        return eLineOk;
    });
}

ELineResult CVX2D_ProjectLines::RecoverLine(std::int32_t projectId, std::int32_t lineId) const {
    return UpdateLine(projectId, lineId, [](CVX2D_IniFile& lines, const std::wstring& key) {
        lines.SetSection(kDeletedLines);
        const std::wstring name = lines.String(key);
        if (name.empty())
            return eLineCantFind;
        // Live names stay unique, and a live line of the same id is never overwritten.
        lines.SetSection(kLineList);
        if (!lines.String(key).empty() || NameTaken(lines, kLineList, name))
            return eLineAlreadyExists;
        lines.SetString(key, name);
        lines.SetSection(kDeletedLines);
        lines.DeleteKey(key);
        return eLineOk;
    });
}

ELineResult CVX2D_ProjectLines::RenameLine(std::int32_t projectId, std::int32_t lineId,
                                           const std::wstring& rawName) const {
    if (projectId >= 1 && lineId >= 1 && !IsValidName(rawName))
        return eLineInvalidName;
    const std::wstring name = TrimBlanks(rawName);
    return UpdateLine(projectId, lineId, [&name](CVX2D_IniFile& lines, const std::wstring& key) {
        lines.SetSection(kLineList);
        if (lines.String(key).empty()) {
            lines.SetSection(kDeletedLines);
            return lines.String(key).empty() ? eLineCantFind : eLineIsDeleted;
        }
        if (NameTaken(lines, kLineList, name, key))
            return eLineAlreadyExists;
        lines.SetString(key, name);
        return eLineOk;
    });
}

ELineResult CVX2D_ProjectLines::RepairLastLineId(std::int32_t projectId) const {
    std::wstring path;
    if (const ELineResult resolved = ResolveLineFile(projectId, path); resolved != eLineOk)
        return resolved;
    // The copy of a standard raises the counter the same way.
    return RaiseLastLineId(m_registry.Datafiles(), path) ? eLineOk : eLineCantOpenDatafile;
}
