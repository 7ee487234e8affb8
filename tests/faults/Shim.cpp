// Loaded in front of the C library of the programs that are put to the test. It counts what changes files in
// a folder, and at a certain one of these changes the disk is full, or the process is killed; or it records
// them all, with the flushes between, and what the program says meanwhile. Other files are left alone.
//   FAULTS_FOLDER  the folder
//   FAULTS_COUNT   file of 8 octets: how many changes there were
//   FAULTS_FULL, FAULTS_FULL_FOR  the change from which on the disk is full, and for how many (0: for ever)
//   FAULTS_KILL    the change before which the process is killed
//   FAULTS_RECORD  the record, a sequence of Entry, each followed by a path and octets

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

// In the order and sizes of power.py.
struct Entry {
    std::int32_t kind; // a letter
    std::int32_t pathSize;
    std::uint64_t file; // its inode
    std::int64_t place, size;
};

std::recursive_mutex order; // of the changes in the record

template <typename Function> Function* Real(Function*, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::int64_t Number(const char* name)
{
    const char* text = std::getenv(name);
    return text ? std::atoll(text) : 0;
}

bool IsIn(const char* path)
{
    static const std::string folder = std::getenv("FAULTS_FOLDER") ? std::getenv("FAULTS_FOLDER") : "";
    return !folder.empty() && path && std::strncmp(path, folder.c_str(), folder.size()) == 0 &&
           (path[folder.size()] == '/' || path[folder.size()] == 0);
}

std::string PathOf(int file)
{
    char path[PATH_MAX];
    const ssize_t size = readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
    return size > 0 ? std::string(path, static_cast<std::size_t>(size)) : std::string();
}

bool IsIn(int file)
{
    return IsIn(PathOf(file).c_str());
}

std::uint64_t InodeOf(int file)
{
    struct stat state {};
    return fstat(file, &state) == 0 ? state.st_ino : 0;
}

std::uint64_t InodeOf(const char* path)
{
    struct stat state {};
    return lstat(path, &state) == 0 ? state.st_ino : 0;
}

std::int64_t CountChange()
{
    static auto* const count = [] {
        const char* name = std::getenv("FAULTS_COUNT");
        const int file =
            name ? static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, O_RDWR | O_CLOEXEC)) : -1;
        void* memory = mmap(nullptr, sizeof(std::int64_t), PROT_READ | PROT_WRITE,
                            file < 0 ? MAP_PRIVATE | MAP_ANONYMOUS : MAP_SHARED, file, 0);
        return static_cast<std::atomic<std::int64_t>*>(memory);
    }();
    return ++*count;
}

// Before a change; whether it has to fail for want of room. errno is set then.
bool Fails(bool needsRoom)
{
    static const std::int64_t killAt = Number("FAULTS_KILL");
    static const std::int64_t fullAt = Number("FAULTS_FULL");
    static const std::int64_t fullFor = Number("FAULTS_FULL_FOR");
    const std::int64_t number = CountChange();
    if (number == killAt)
        kill(getpid(), SIGKILL);
    if (!needsRoom || fullAt == 0 || number < fullAt || (fullFor != 0 && number >= fullAt + fullFor))
        return false;
    errno = ENOSPC;
    return true;
}

void Note(char kind, std::uint64_t file, std::int64_t place, const std::string& path,
          const void* octets = nullptr, std::size_t size = 0)
{
    static const int record = [] {
        const char* name = std::getenv("FAULTS_RECORD");
        constexpr int Flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC;
        return name ? static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, Flags, 0600)) : -1;
    }();
    if (record < 0)
        return;
    const int reason = errno;
    const Entry entry{kind, static_cast<std::int32_t>(path.size()), file, place,
                      static_cast<std::int64_t>(size)};
    std::string all(reinterpret_cast<const char*>(&entry), sizeof entry);
    all += path;
    if (octets)
        all.append(static_cast<const char*>(octets), size);
    syscall(SYS_write, record, all.data(), all.size());
    errno = reason;
}

template <typename Write>
ssize_t Written(int file, const void* octets, std::size_t count, std::int64_t place, Write write)
{
    const std::lock_guard lock(order);
    if (file == STDOUT_FILENO)
        Note('s', 0, 0, {}, octets, count);
    if (!IsIn(file))
        return write();
    if (Fails(true))
        return -1;
    const bool append = place < 0 && (fcntl(file, F_GETFL) & O_APPEND) != 0;
    const std::int64_t at = place >= 0 ? place : lseek(file, 0, append ? SEEK_END : SEEK_CUR);
    const ssize_t written = write();
    if (written > 0)
        Note('w', InodeOf(file), at, {}, octets, static_cast<std::size_t>(written));
    return written;
}

// What is in the folder need not get to a real disk.
template <typename Flush> int Flushed(int file, Flush flush)
{
    const std::lock_guard lock(order);
    if (!IsIn(file))
        return flush();
    Fails(false);
    Note('f', InodeOf(file), 0, PathOf(file));
    return 0;
}

template <typename Open> int Opened(const char* path, int flags, Open open)
{
    const std::lock_guard lock(order);
    if (!IsIn(path) || (flags & (O_ACCMODE | O_CREAT | O_TRUNC)) == O_RDONLY)
        return open();
    const bool unnamed = (flags & O_TMPFILE) == O_TMPFILE;
    const bool isNew = unnamed || InodeOf(path) == 0;
    if ((isNew || (flags & O_TRUNC)) && Fails(isNew))
        return -1;
    const int file = open();
    if (file >= 0) {
        Note(unnamed ? 'u' : isNew ? 'c' : 'o', InodeOf(file), 0, path);
        if (!isNew && (flags & O_TRUNC))
            Note('t', InodeOf(file), 0, {});
    }
    return file;
}

template <typename Move> int Moved(const char* from, const char* to, Move move)
{
    const std::lock_guard lock(order);
    if (!IsIn(to))
        return move();
    if (Fails(true))
        return -1;
    const std::uint64_t file = InodeOf(from);
    const int result = move();
    if (result == 0)
        Note('r', file, static_cast<std::int64_t>(std::strlen(from)), std::string(from) + to);
    return result;
}

} // namespace

extern "C" {

ssize_t write(int file, const void* octets, std::size_t count)
{
    static auto* const real = Real(&write, "write");
    return Written(file, octets, count, -1, [&] { return real(file, octets, count); });
}

ssize_t pwrite64(int file, const void* octets, std::size_t count, off64_t place)
{
    static auto* const real = Real(&pwrite64, "pwrite64");
    return Written(file, octets, count, place, [&] { return real(file, octets, count, place); });
}

int fsync(int file)
{
    static auto* const real = Real(&fsync, "fsync");
    return Flushed(file, [&] { return real(file); });
}

int fdatasync(int file)
{
    static auto* const real = Real(&fdatasync, "fdatasync");
    return Flushed(file, [&] { return real(file); });
}

int ftruncate64(int file, off64_t size)
{
    static auto* const real = Real(&ftruncate64, "ftruncate64");
    const std::lock_guard lock(order);
    if (!IsIn(file))
        return real(file, size);
    Fails(false);
    const int result = real(file, size);
    if (result == 0)
        Note('t', InodeOf(file), size, {});
    return result;
}

int ftruncate(int file, off_t size)
{
    return ftruncate64(file, size);
}

int unlink(const char* path)
{
    static auto* const real = Real(&unlink, "unlink");
    const std::lock_guard lock(order);
    if (!IsIn(path))
        return real(path);
    Fails(false);
    const int result = real(path);
    if (result == 0)
        Note('d', 0, 0, path);
    return result;
}

int rmdir(const char* path)
{
    static auto* const real = Real(&rmdir, "rmdir");
    const std::lock_guard lock(order);
    if (!IsIn(path))
        return real(path);
    Fails(false);
    const int result = real(path);
    if (result == 0)
        Note('d', 0, 0, path);
    return result;
}

int remove(const char* path)
{
    static auto* const real = Real(&remove, "remove");
    struct stat state {};
    return lstat(path, &state) == 0 && S_ISREG(state.st_mode) ? unlink(path) : real(path);
}

int rename(const char* from, const char* to)
{
    static auto* const real = Real(&rename, "rename");
    return Moved(from, to, [&] { return real(from, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags)
{
    static auto* const real = Real(&renameat2, "renameat2");
    return Moved(from, to, [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int link(const char* from, const char* to)
{
    static auto* const real = Real(&link, "link");
    const std::lock_guard lock(order);
    if (!IsIn(to))
        return real(from, to);
    if (Fails(true))
        return -1;
    const int result = real(from, to);
    if (result == 0)
        Note('l', InodeOf(to), 0, to);
    return result;
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags)
{
    static auto* const real = Real(&linkat, "linkat");
    const std::lock_guard lock(order);
    if (!IsIn(to))
        return real(fromFolder, from, toFolder, to, flags);
    if (Fails(true))
        return -1;
    const int result = real(fromFolder, from, toFolder, to, flags);
    if (result == 0)
        Note('l', InodeOf(to), 0, to);
    return result;
}

int mkdir(const char* path, mode_t mode)
{
    static auto* const real = Real(&mkdir, "mkdir");
    const std::lock_guard lock(order);
    if (!IsIn(path))
        return real(path, mode);
    if (Fails(true))
        return -1;
    const int result = real(path, mode);
    if (result == 0)
        Note('m', 0, 0, path);
    return result;
}

int open64(const char* path, int flags, ...)
{
    static auto* const real = Real(&open64, "open64");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return Opened(path, flags, [&] { return real(path, flags, mode); });
}

int open(const char* path, int flags, ...)
{
    static auto* const real = Real(&open, "open");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return Opened(path, flags, [&] { return real(path, flags, mode); });
}
}
