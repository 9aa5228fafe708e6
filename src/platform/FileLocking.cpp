#include "platform/FileLocking.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace platform {

#ifdef _WIN32

ELockAttempt TryLockFile(const std::filesystem::path& lockFile, SLockHandle& handle,
                         std::error_code& error) {
    error.clear();
    // Everyone may read, write and delete the file while we hold it: only the
    // byte-range lock says who owns it.
    // DELETE lets the holder remove the file as it lets go (UnlockFile).
    HANDLE file = ::CreateFileW(lockFile.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD code = ::GetLastError();
        error.assign(static_cast<int>(code), std::system_category());
        switch (code) {
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return ELockAttempt::Busy;
        case ERROR_ACCESS_DENIED: {
            // A lock file that its last holder is deleting refuses new opens
            // for a moment; a folder we may not write refuses them for good,
            // and so does a folder in the lock file's place.
            std::error_code ec;
            if (std::filesystem::is_directory(lockFile, ec))
                return ELockAttempt::Failed;
            return std::filesystem::exists(lockFile, ec) ? ELockAttempt::Busy
                                                         : ELockAttempt::ReadOnly;
        }
        case ERROR_WRITE_PROTECT:
            return ELockAttempt::ReadOnly;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_FILE_NOT_FOUND:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_INVALID_DRIVE:
            return ELockAttempt::Missing;
        default:
            return ELockAttempt::Failed;
        }
    }
    OVERLAPPED overlapped{};
    if (!::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                      &overlapped)) {
        const DWORD code = ::GetLastError();
        ::CloseHandle(file);
        error.assign(static_cast<int>(code), std::system_category());
        return code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING ? ELockAttempt::Busy
                                                                        : ELockAttempt::Failed;
    }
    handle.value = reinterpret_cast<std::intptr_t>(file);
    return ELockAttempt::Locked;
}

bool IsLockFileHeld(const std::filesystem::path& lockFile) {
    HANDLE file = ::CreateFileW(lockFile.c_str(), GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD code = ::GetLastError();
        return code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND;
    }
    // A shared lock is refused while anyone holds the exclusive one.
    OVERLAPPED overlapped{};
    const bool unlocked = ::LockFileEx(file, LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &overlapped);
    if (unlocked)
        ::UnlockFileEx(file, 0, 1, 0, &overlapped);
    ::CloseHandle(file);
    return !unlocked;
}

void UnlockFile(const std::filesystem::path&, SLockHandle& handle) {
    if (!handle.IsOpen())
        return;
    HANDLE file = reinterpret_cast<HANDLE>(handle.value);
    // Deleted when the last handle closes; until then new opens are refused,
    // so a waiter that still holds the old file keeps the lock to itself.
    FILE_DISPOSITION_INFO dispose{};
    dispose.DeleteFile = TRUE;
    ::SetFileInformationByHandle(file, FileDispositionInfo, &dispose, sizeof dispose);
    OVERLAPPED overlapped{};
    ::UnlockFileEx(file, 0, 1, 0, &overlapped);
    ::CloseHandle(file);
    handle.value = -1;
}

#else

namespace {

int SetWriteLock(int fd) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0;
    lock.l_len = 0;
#ifdef F_OFD_SETLK
    // Open-file-description locks belong to this open file, not to the
    // process, so two threads or two objects of one process exclude each
    // other too, and closing another descriptor never drops them.
    if (::fcntl(fd, F_OFD_SETLK, &lock) == 0)
        return 0;
    if (errno != EINVAL)
        return -1;
#endif
    return ::fcntl(fd, F_SETLK, &lock);
}

bool FolderWritable(const std::filesystem::path& lockFile) {
    const std::filesystem::path folder =
        lockFile.has_parent_path() ? lockFile.parent_path() : std::filesystem::path(".");
    return ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

} // namespace

ELockAttempt TryLockFile(const std::filesystem::path& lockFile, SLockHandle& handle,
                         std::error_code& error) {
    error.clear();
    const int fd = ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
    if (fd < 0) {
        const int code = errno;
        error.assign(code, std::generic_category());
        switch (code) {
        case EROFS:
            return ELockAttempt::ReadOnly;
        case EACCES:
        case EPERM:
            // Another user's lock file that we may not open while they hold
            // it, in a folder we may write: wait for them.
            return FolderWritable(lockFile) ? ELockAttempt::Busy : ELockAttempt::ReadOnly;
        case ENOENT:
        case ENOTDIR:
            return ELockAttempt::Missing;
        default:
            return ELockAttempt::Failed;
        }
    }
    // Other users of a shared folder must be able to open the file while we
    // hold it, whatever our umask; only its owner may change that.
    ::fchmod(fd, 0666);
    if (SetWriteLock(fd) != 0) {
        const int code = errno;
        ::close(fd);
        error.assign(code, std::generic_category());
        return code == EAGAIN || code == EACCES ? ELockAttempt::Busy : ELockAttempt::Failed;
    }
    // The file may have been removed by the holder we waited for; then our
    // lock is on a file nobody else will look at. Try again on the new one.
    struct stat opened {};
    struct stat named {};
    if (::fstat(fd, &opened) != 0 || ::stat(lockFile.c_str(), &named) != 0 ||
        opened.st_dev != named.st_dev || opened.st_ino != named.st_ino) {
        ::close(fd);
        return ELockAttempt::Busy;
    }
    // A lock file left open to everyone does not make the folder writable:
    // whoever cannot save beside it must not hold it.
    if (!FolderWritable(lockFile)) {
        ::close(fd);
        error = std::make_error_code(std::errc::permission_denied);
        return ELockAttempt::ReadOnly;
    }
    handle.value = fd;
    return ELockAttempt::Locked;
}

bool IsLockFileHeld(const std::filesystem::path& lockFile) {
    const int fd = ::open(lockFile.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0)
        return errno != ENOENT && errno != ENOTDIR;
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    int result = -1;
#ifdef F_OFD_GETLK
    result = ::fcntl(fd, F_OFD_GETLK, &lock);
#endif
    if (result != 0) {
        lock = {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        result = ::fcntl(fd, F_GETLK, &lock);
    }
    ::close(fd);
    return result != 0 || lock.l_type != F_UNLCK;
}

void UnlockFile(const std::filesystem::path& lockFile, SLockHandle& handle) {
    if (!handle.IsOpen())
        return;
    // Removed while still locked, so nobody can lock this file afterwards
    // and think it is the current one.
    ::unlink(lockFile.c_str());
    ::close(static_cast<int>(handle.value));
    handle.value = -1;
}

#endif

} // namespace platform
