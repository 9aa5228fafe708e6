// The navigator of clients and standards: the tree model, what applies to
// the selection, and every lifecycle command with its questions and messages.
// The desktop tree renders the model and passes the user's actions back.
#pragma once

#include "app/NavigatorTree.h"
#include "store/ClientRegistry.h"
#include "store/Profile.h"
#include "store/Progress.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <functional>
#include <optional>
#include <set>
#include <vector>

// Menu command ids of the navigator. In a list of menu items, the separator
// stands for the line between two groups.
enum ENavCommand {
    eCmdSeparator = 0,
    eCmdNewClient = 201,
    eCmdRenameClient = 202,
    eCmdDeleteClient = 203,
    eCmdNewStandard = 136,
    eCmdOpenStandard = 135,
    eCmdCopyStandard = 194,
    eCmdRenameStandard = 137,
    eCmdPrintStandard = 178,
    eCmdDeleteStandard = 138,
    eCmdRecoverStandard = 143,
    eCmdPurgeStandard = 144,
    eCmdExportStandard = 218,
    eCmdImportStandards = 32771,
    eCmdCompareStandards = 32775,
    eCmdShowDeleted = 212,
    eCmdRefresh = 210,
};

// Requests the navigator sends to the window that owns it.
enum class ENavRequest { Open = 11, Compare = 12 };

class INavigatorOwner {
public:
    virtual ~INavigatorOwner() = default;
    // Open with a standard id, Compare with an id or -1 (no first standard).
    virtual void Request(ENavRequest request, std::int32_t standardId) = 0;
    // Runs the new standard wizard for a client (0: none); true on Finish.
    virtual bool RunNewStandardWizard(std::int32_t clientId, std::int32_t& newId,
                                      std::wstring& newName) = 0;
    virtual void PrintStandard(std::int32_t standardId) = 0;
    virtual void ExportStandard(std::int32_t standardId, const std::wstring& name) = 0;
    virtual void ImportStandards(std::int32_t clientId) = 0;
    // Runs long work (a copy with its drawings, a purge) where the user can
    // see that it goes on: `work` gets the progress to report to, stopping
    // when it returns false; `canStop` says whether the user may stop it.
    // Here it simply runs.
    virtual void RunLong(const std::wstring& /*text*/, bool /*canStop*/,
                         const std::function<void(const CProgress&)>& work) {
        work({});
    }
};

struct SNavButtons {
    bool newClient = true;
    bool newStandard = true;
    bool openStandard = false;
};

// The pop-up menu for the item under the pointer: its index in the
// navigator's pop-up menu, its items in order, the check of "Show Deleted
// Standards" and the commands shown greyed.
struct SNavPopup {
    int menuIndex = 5;
    std::vector<ENavCommand> items;
    bool showDeletedChecked = false;
    std::set<ENavCommand> greyed;
};

class CNavigatorController {
public:
    static constexpr int kDeletedShown = 8;

    CNavigatorController(CVX2D_ProjectRegistry& projects, CVX2D_ClientRegistry& clients,
                         CProfile& profile, IPrompter& prompter, INavigatorOwner& owner);

    const CNavigatorTree& Tree() const { return m_tree; }
    // What the pointer over an item shows: a standard's id and folder (two
    // standards may share a name), a client's id and its number of standards.
    std::wstring ToolTipOf(std::uint64_t handle) const;
    // What changed in the tree since the view last asked.
    std::vector<SNavChange> TakeTreeChanges() { return m_tree.TakeChanges(); }
    std::uint64_t Selection() const { return m_selection; }
    // The item whose label the view should put into editing, or 0.
    std::uint64_t EditingItem() const { return m_editing; }

    void Rebuild();
    void Select(std::uint64_t handle);
    int SelectionKind() const { return KindOf(m_selection); }
    int KindOf(std::uint64_t handle) const;
    SNavButtons Buttons() const;
    bool DeletedShown() const;
    // Selects the item under the pointer (0: none) and says which pop-up opens.
    SNavPopup RightClick(std::uint64_t handle);
    // Whether a command acts on the current selection; the others do nothing.
    bool Applies(ENavCommand command) const;

    // Runs a menu command on the selection; silently nothing when it does not
    // apply. Rename commands start label editing (EditingItem).
    void Execute(ENavCommand command);
    // What the last command or label edit did, in a line for the status
    // bar ("Standard 'Pipe' copied as 'Copy of Pipe'"); empty when it did
    // nothing to tell.
    const std::wstring& Outcome() const { return m_outcome; }
    // Label editing ended: nullopt when cancelled. True when the view should
    // keep the new label.
    bool EndLabelEdit(const std::optional<std::wstring>& newText);
    // A standard dragged onto an item (0: the empty area at the top level).
    void Drop(std::uint64_t dragged, std::uint64_t target);

    // The client of the selection: the client itself, or the client of a
    // selected standard; 0 at the top level.
    std::int32_t SelectedClientId() const;

private:
    void NewClient();
    void BeginRename();
    void DeleteClient();
    void NewStandard();
    void CopyStandard();
    void MarkDeleted();
    void Recover();
    void Purge();
    void ToggleDeleted();
    void Error(const std::wstring& text);
    bool IsStandardKind(int kind) const { return kind == eNavStandard || kind == eNavDeleted; }

    CVX2D_ProjectRegistry& m_projects;
    CVX2D_ClientRegistry& m_clients;
    CProfile& m_profile;
    IPrompter& m_prompter;
    INavigatorOwner& m_owner;
    CNavigatorTree m_tree;
    std::uint64_t m_selection = 0;
    std::uint64_t m_editing = 0;
    std::wstring m_editOldText;
    std::wstring m_outcome;
};
