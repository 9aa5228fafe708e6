// Operations on clients and standards that both programs offer, and the
// first line of what each says when it fails (the registry's reason follows
// after a blank line).
#pragma once

#include "store/ClientRegistry.h"
#include "store/ProjectRegistry.h"

#include <cstdint>
#include <string>
#include <vector>

// Purges the standard (its registry entry, then its folder) and, once it is
// really gone, takes it out of its client. A folder that could not be
// deleted keeps the standard in the deleted list and with its client; `gone`
// tells which.
EProjectResult PurgeStandard(CVX2D_ProjectRegistry& projects, CVX2D_ClientRegistry& clients,
                             std::int32_t id, bool& gone);

// The ids of the standards (deleted ones too) whose name is exactly `name`,
// in registry order; nothing when the registry cannot be read (`result`).
std::vector<std::int32_t> StandardsNamed(const CVX2D_ProjectRegistry& projects,
                                         const std::wstring& name, EProjectResult& result);
// The ids of the clients whose name is exactly `name`.
std::vector<std::int32_t> ClientsNamed(const CVX2D_ClientRegistry& clients,
                                       const std::wstring& name);

// What a purge says when the standard's folder could not be deleted.
std::wstring PurgeKeptText(const std::wstring& name);

std::wstring CreateClientErrorText();
std::wstring RenameClientErrorText(const std::wstring& oldName, const std::wstring& newName);
std::wstring DeleteClientErrorText(const std::wstring& name);
std::wstring CreateStandardErrorText(const std::wstring& name);
std::wstring CopyStandardErrorText(const std::wstring& name);
std::wstring RenameStandardErrorText(const std::wstring& oldName, const std::wstring& newName);
std::wstring DeleteStandardErrorText(const std::wstring& name);
std::wstring RecoverStandardErrorText(const std::wstring& name);
std::wstring PurgeStandardErrorText(const std::wstring& name);
std::wstring MoveStandardErrorText();
