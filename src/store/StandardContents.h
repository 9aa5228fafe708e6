// What a standard's folder holds that is registered outside it (its own pipe
// specs): the standard registry tells it of copies, renames and purges, so
// that the register and the folders stay in step whichever face does them.
#pragma once

#include <cstdint>
#include <string>

class IStandardContents {
public:
    virtual ~IStandardContents() = default;

    // Standard `id` got its folder `folder` as a copy of standard `sourceId`,
    // or from an archive (`sourceId` 0): what the folder holds is registered
    // for it. False when that failed; nothing of it is registered then.
    virtual bool Arrived(std::int32_t id, std::int32_t sourceId, const std::wstring& folder) = 0;
    // The standard's folder is now `folder` (a rename). False when what
    // points into it could not follow; it points where it did then.
    virtual bool Moved(std::int32_t id, const std::wstring& folder) = 0;
    // The standard and its folder are gone.
    virtual void Purged(std::int32_t id) = 0;
};
