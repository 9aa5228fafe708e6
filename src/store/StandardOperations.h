// Operations on clients and standards that both programs offer, and the
// first line of what each says when it fails (the registry's reason follows
// after a blank line).
#pragma once

#include "store/ClientRegistry.h"
#include "store/ProjectRegistry.h"

#include <cstdint>
#include <string>

// Purges the standard (its registry entry, then its folder) and, once it is
// really gone, takes it out of its client. A folder that could not be
// deleted keeps the standard in the deleted list and with its client; `gone`
// tells which.
EProjectResult PurgeStandard(CVX2D_ProjectRegistry& projects, CVX2D_ClientRegistry& clients,
                             std::int32_t id, bool& gone);

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
