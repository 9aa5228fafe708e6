// The folders new standards are made from ("Template/Metric", "Imperial",
// "Metric 2015", "Imperial 2015" in the datafiles folder).
#pragma once

#include "store/Datafiles.h"

#include <string>
#include <vector>

std::vector<std::wstring> TemplateFolderNames();

// Copies each template folder that the datafiles folder lacks from the
// shipped copy in `shippedFolder` (which holds "Template/..."). Folders that
// exist are left alone. True when every template folder exists afterwards.
bool SeedTemplateFolders(const CVX2D_Datafiles& datafiles, const std::wstring& shippedFolder);
