// Numbered names: the registry keys and folder names of clients, standards,
// lines and specs, id allocation from the registries' counters, and the
// default display names.
#pragma once

#include <cstdint>
#include <string>

class CVX2D_IniFile;

std::wstring MakeClientKey(std::int32_t id);
std::wstring MakeProjectKey(std::int32_t id);
std::wstring MakeLineKey(std::int32_t id);
std::wstring MakeSpecKey(std::int32_t id);

// The id after the first occurrence of the form's prefix (standards: in any
// letter case), read like _wtol; 0 when the prefix is absent.
std::int32_t ParseClientKey(const std::wstring& text);
std::int32_t ParseProjectKey(const std::wstring& text);
std::int32_t ParseLineKey(const std::wstring& text);
std::int32_t ParseSpecKey(const std::wstring& text);

// "VX2D_PRJ_7 - Metric Piping"
std::wstring MakeProjectLabel(std::int32_t id, const std::wstring& name);

// "ProjectList - 3": a client's list of standards in the client datafile.
std::wstring MakeClientProjectListSection(std::int32_t clientId);

// Reads the counter from section "General" (default 0), adds one, writes it
// back and returns it. Leaves "General" current; the caller saves.
std::int32_t AllocateId(CVX2D_IniFile& registry, const std::wstring& counterKey);

// The first "Standard %ld" from LastProjectId + 1 on that no active or deleted
// standard is called; writes nothing.
std::wstring MakeDefaultProjectName(CVX2D_IniFile& projectDatafile);

std::wstring MakeDefaultClientName(std::int32_t clientId);
std::wstring MakeCopyName(const std::wstring& sourceName);
