// Why the last update of a datafile failed, kept per thread like errno, so
// that a message can say more than a result code: that another workstation
// is updating the file, that the folder is read-only for this user, that
// the disk is full.
#pragma once

#include <string>

enum class EDatafileProblem {
    None,
    Busy,         // another workstation held the lock for the whole wait
    ReadOnly,     // the folder cannot be written by this user
    Missing,      // the folder does not exist or cannot be reached
    NotPermitted, // the file itself may not be written by this user
    ReadFailed,   // the file is there but could not be read
    WriteFailed,  // writing failed (a full disk, a share that went away)
};

struct SDatafileProblem {
    EDatafileProblem kind = EDatafileProblem::None;
    std::wstring path;
    std::wstring detail; // the system's own words, for WriteFailed
};

// Replaces the problem noted last on this thread.
void NoteDatafileProblem(EDatafileProblem kind, const std::wstring& path,
                         const std::wstring& detail = {});
void ClearDatafileProblem();
const SDatafileProblem& LastDatafileProblem();

// The problem as a sentence for the user; empty when there is none.
std::wstring DatafileProblemText();
// `message`, then a blank line and the problem's sentence when there is one.
std::wstring WithDatafileProblem(const std::wstring& message);
