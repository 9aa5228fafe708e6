// The shared datafiles folder and the files and folders found through it.
#pragma once

#include <string>

class CVX2D_Datafiles {
public:
    // `root` is the datafiles folder; a trailing separator is added.
    explicit CVX2D_Datafiles(const std::wstring& root);

    const std::wstring& Root() const { return m_root; }
    bool IsKnown() const { return !m_root.empty(); }
    // Whether the folder is there (a share may be away for a while).
    bool Exists() const;
    // Root + name; empty when the root is unknown.
    std::wstring File(const std::wstring& name) const;

    std::wstring ClientDatafile() const { return File(L"ClientDatafile.ini"); }
    std::wstring ProjectDatafile() const { return File(L"ProjectDatafile.ini"); }
    std::wstring LineDatafile() const { return File(L"LineDatafile.ini"); }

    // "Projects/": one sub-folder per standard.
    std::wstring ProjectsFolder() const;
    // "Template/<name>/": the folders new standards are made from.
    std::wstring TemplateFolder(const std::wstring& name) const;
    // The libraries folder a standard uses when its settings name none.
    std::wstring DefaultLibrariesFolder() const;

private:
    std::wstring m_root;
};

// What to say when no datafiles folder is known at all.
std::wstring NoDatafilesText();

// The message for a datafiles folder that is not there: only the
// installation creates one, so that a share that is briefly away never gets
// a second, empty tree.
std::wstring MissingDatafilesText(const std::wstring& folder);
