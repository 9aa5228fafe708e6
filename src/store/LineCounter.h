// The line-id counter shared by all standards, "LastLineId" in the datafiles
// folder's "LineDatafile.ini".
#pragma once

#include "store/Datafiles.h"

#include <string>

// Raises "LastLineId" to the highest line id in the "LineList" of the given
// "Lines.ini", so that lines a standard brings along (a copy, an import) are
// never handed out again. Never lowers it. False when the counter could not
// be updated.
bool RaiseLastLineId(const CVX2D_Datafiles& datafiles, const std::wstring& linesIniPath);
