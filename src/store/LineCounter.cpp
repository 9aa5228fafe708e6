#include "store/LineCounter.h"

#include "datafile/Ids.h"
#include "datafile/IniFile.h"

#include <algorithm>

bool RaiseLastLineId(const CVX2D_Datafiles& datafiles, const std::wstring& linesIniPath) {
    CVX2D_IniFile lines;
    lines.SetAutoSave(false);
    if (lines.Open(linesIniPath) != CVX2D_IniFile::eOk)
        return true; // a standard without lines raises nothing
    std::int32_t highest = 0;
    for (const auto& e : lines.Entries()) {
        if (e.section == L"LineList")
            highest = std::max(highest, ParseLineKey(e.key));
    }
    if (highest == 0)
        return true;
    if (datafiles.LineDatafile().empty())
        return false;
    CVX2D_IniFile counter;
    if (counter.OpenForUpdate(datafiles.LineDatafile()) != CVX2D_IniFile::eOk)
        return false;
    counter.SetSection(L"General");
    if (highest > counter.Long(L"LastLineId", 0))
        counter.SetLong(L"LastLineId", highest);
    return counter.Save() == CVX2D_IniFile::eOk;
}
