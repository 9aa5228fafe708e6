// How long work reports how far it has come: called with the amount done,
// the amount in all and what is being worked on now; returning false asks
// the work to stop (and undo what it can).
#pragma once

#include <cstddef>
#include <functional>
#include <string>

using CProgress =
    std::function<bool(std::size_t done, std::size_t total, const std::wstring& item)>;
