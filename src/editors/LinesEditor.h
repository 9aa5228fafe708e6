// The lines page of a standard: its live and deleted line numbers as rows,
// and the commands on them. Every command writes at once, as the line
// operations themselves do (a new line takes its id from the shared counter
// straight away), so the page never holds unsaved changes and has no Apply.
#pragma once

#include "contents/ProjectSpecs.h"
#include "editors/PageEditor.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <string>
#include <vector>

struct SLineRow {
    std::int32_t id = 0;
    std::wstring name;
    bool deleted = false;
};

// "Live" or "Deleted": the state column.
std::wstring LineStateText(bool deleted);

// Gives a new line of a standard the specs checked for the standard, in
// every application, as a line the page makes gets them. The first failure.
ESpecResult GiveLineTheCheckedSpecs(const CVX2D_ProjectRegistry& projects, std::int32_t projectId,
                                    std::int32_t lineId);

class CLinesEditor : public CPageEditor {
public:
    using CPageEditor::CPageEditor;

    // Reads the standard's lines: the live ones by id, then the deleted ones
    // by id. False, with the reason shown, when they cannot be read.
    bool Open(std::int32_t projectId);

    const std::vector<SLineRow>& Rows() const { return m_rows; }
    // The row of a line id; -1 when the list has none.
    int Find(std::int32_t lineId) const;

    // Creates "Line <n>" and gives it the specs checked for the standard in
    // every application, as a standard's first line gets them. The new id, or
    // 0 when the line could not be made (the reason is shown).
    std::int32_t CreateLine();
    // Asks, then marks the line deleted. False when refused, declined or failed.
    bool DeleteLine(std::int32_t lineId);
    // Makes a deleted line live again; refused while a live line has its name.
    bool RecoverLine(std::int32_t lineId);
    // Renames a live line under the same key; the name is trimmed, an
    // unchanged name writes nothing. Refused when another live line has it.
    bool RenameLine(std::int32_t lineId, const std::wstring& name);

    // "::/Line_Numbers.htm".
    std::wstring HelpTopic() const override;

    // Every command has written already: nothing waits for Apply.
    bool ApplyEnabled() const override { return false; }

protected:
    bool Save() override { return true; }
    std::wstring ContentsName() const override { return L"lines"; }
    void Discard() override { Reload(true); }

private:
    bool Reload(bool quiet = false);
    const SLineRow* Row(std::int32_t lineId) const;
    void Error(const std::wstring& what, int code);

    std::vector<SLineRow> m_rows;
};
