// A standard's line numbers: its "Lines.ini" with the live lines in
// "LineList" and the deleted ones in "DeletedLines", and the line-id counter
// "LastLineId" that all standards share in "LineDatafile.ini", so that an id
// is never handed out twice across standards.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class CVX2D_IniFile;
class CVX2D_ProjectRegistry;

enum [[nodiscard]] ELineResult{
    eLineOk = 0,          eLineCantCreate = 1, eLineCantFind = 2,         eLineCantOpenDatafile = 3,
    eLineInvalidName = 4, eLineInvalidId = 5,  eLineInvalidProjectId = 6, eLineAlreadyExists = 7,
    eLineIsDeleted = 8,
};

// Parallel lists, index for index: live lines first, in file order.
struct SLineList {
    std::vector<std::int32_t> ids;
    std::vector<std::wstring> names;
    std::vector<bool> deleted;

    std::size_t Size() const { return ids.size(); }
    void Clear();
    void Add(std::int32_t id, const std::wstring& name, bool isDeleted);
};

class CVX2D_ProjectLines {
public:
    explicit CVX2D_ProjectLines(const CVX2D_ProjectRegistry& registry) : m_registry(registry) {}

    // The message of a code; "Unknown error" for anything outside the table.
    static std::wstring GetErrorText(int code);
    // The id after "VX2D_LINE_" in a key; 0 without the prefix.
    static std::int32_t ParseLineId(const std::wstring& key);

    // The standard's "Lines.ini"; empty when the standard has no folder.
    std::wstring GetLineFilePath(std::int32_t projectId) const;

    // Live lines and, with `withDeleted`, the deleted ones after them. A
    // standard without "Lines.ini" has no lines. `eval` gives the single line
    // 1 "Eval" of an evaluation copy without reading anything.
    ELineResult GetLines(std::int32_t projectId, SLineList& lines, bool withDeleted = false,
                         bool eval = false) const;

    // Takes the next id from "LastLineId" (written back at once) and stores
    // the line as "Line <id>", or the first higher number no line of the
    // standard, live or deleted, is called.
    ELineResult CreateLine(std::int32_t projectId, std::int32_t& lineId, std::wstring& name) const;
    // The same with a name of the caller's (trimmed), refused when it is not
    // a valid name or a live line of the standard already has it.
    ELineResult CreateLine(std::int32_t projectId, const std::wstring& wantedName,
                           std::int32_t& lineId, std::wstring& name) const;

    // Moves the line from "LineList" to "DeletedLines", keeping its name.
    ELineResult DeleteLine(std::int32_t projectId, std::int32_t lineId) const;
    // Moves a deleted line back; refused when a live line has its name.
    ELineResult RecoverLine(std::int32_t projectId, std::int32_t lineId) const;
    // Renames a live line (trimmed name) under the same key.
    ELineResult RenameLine(std::int32_t projectId, std::int32_t lineId,
                           const std::wstring& name) const;

    // Raises "LastLineId" to the highest id of the standard's live lines;
    // never lowers it.
    ELineResult RepairLastLineId(std::int32_t projectId) const;

private:
    ELineResult ResolveLineFile(std::int32_t projectId, std::wstring& path) const;
    // The standard's "Lines.ini" opened under its lock for a change.
    ELineResult OpenForUpdate(std::int32_t projectId, CVX2D_IniFile& lines) const;
    // One change of a line in the standard's "Lines.ini" under its lock: the
    // change gets the file and the line's key and returns eLineOk to have the
    // file saved, any other code to leave it as it was.
    using CLineChange = std::function<ELineResult(CVX2D_IniFile&, const std::wstring&)>;
    ELineResult UpdateLine(std::int32_t projectId, std::int32_t lineId,
                           const CLineChange& change) const;
    ELineResult Create(std::int32_t projectId, const std::wstring* wantedName, std::int32_t& lineId,
                       std::wstring& name) const;

    const CVX2D_ProjectRegistry& m_registry;
};
