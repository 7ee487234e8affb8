// Loaded in front of the C library of the programs that the bench for waiting measures. It makes flushes slow
// and writes fail as the bench wants it, keeps the main thread for a while, and notes with CLOCK_MONOTONIC
// how long the event loop was not waiting, when the bell rang, and what was written to the line. The bench
// shares the structure below with it (WAITING_CONTROL) and reads its notes (WAITING_NOTES); without these
// variables every function does what it always does.

#include <atomic>
#include <cerrno>
#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

constexpr std::int64_t Millisecond = 1000000; // ns
constexpr std::int64_t WorthNoting = 20 * Millisecond;
constexpr int PseudoTerminalMajor = 5;
constexpr int PseudoTerminalMinor = 2;

// In the order and sizes of marks.py.
struct Control {
    std::atomic<std::int32_t> failWith;   // the errno of what would change a file, or 0
    std::atomic<std::int32_t> everywhere; // not only the database's files
    std::atomic<std::int32_t> flushDelay; // ms
    std::atomic<std::int32_t> block;      // ms that the main thread sleeps at its next turn
    std::atomic<std::int64_t> busySince;  // ns; 0 while the event loop waits
    std::atomic<std::int64_t> longest;    // ns that it was not waiting
};

std::int64_t Now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000 * Millisecond + time.tv_nsec;
}

void Sleep(std::int64_t milliseconds)
{
    timespec time{milliseconds / 1000, milliseconds % 1000 * Millisecond};
    while (nanosleep(&time, &time) != 0 && errno == EINTR) {
    }
}

Control* OpenControl()
{
    const char* name = std::getenv("WAITING_CONTROL");
    const int file = name ? static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, O_RDWR | O_CLOEXEC)) : -1;
    if (file < 0)
        return nullptr;
    void* memory = mmap(nullptr, sizeof(Control), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    syscall(SYS_close, file);
    return memory == MAP_FAILED ? nullptr : static_cast<Control*>(memory);
}

Control* Shared()
{
    static Control* const control = OpenControl();
    return control;
}

void Note(const char* text, int size)
{
    static const int file = [] {
        const char* name = std::getenv("WAITING_NOTES");
        constexpr int Flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC;
        return name ? static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, Flags, 0600)) : -1;
    }();
    if (file >= 0)
        syscall(SYS_write, file, text, size);
}

void NoteTime(const char* what, std::int64_t when, std::int64_t length = 0)
{
    char line[96];
    Note(line, std::snprintf(line, sizeof line, "%s %" PRId64 " %" PRId64 "\n", what, when, length));
}

// Functions of the C library are looked up by the type of what stands in for them.
template <typename Function> Function* Real(Function*, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsOfDatabase(const char* path)
{
    static const char* const prefix = std::getenv("WAITING_DATABASE");
    return prefix && std::strncmp(path, prefix, std::strlen(prefix)) == 0;
}

// Whether a change of the file has to fail; errno is set then.
bool Fails(int file)
{
    Control* control = Shared();
    const int reason = control ? control->failWith.load() : 0;
    if (reason == 0)
        return false;
    struct stat state {};
    if (fstat(file, &state) != 0 || !S_ISREG(state.st_mode))
        return false;
    if (!control->everywhere) {
        char link[64];
        char path[4096];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
        const ssize_t size = readlink(link, path, sizeof path - 1);
        path[size > 0 ? size : 0] = 0;
        if (!IsOfDatabase(path))
            return false;
    }
    errno = reason;
    return true;
}

// A file system that is read-only lets nobody open, make or remove; a full one does.
bool IsRefused(const char* path, int flags)
{
    Control* control = Shared();
    if (!control || control->failWith.load() != EROFS || (flags & O_ACCMODE) == O_RDONLY ||
        (!control->everywhere && !IsOfDatabase(path)))
        return false;
    struct stat state {};
    if (stat(path, &state) == 0 && !S_ISREG(state.st_mode))
        return false;
    errno = EROFS;
    return true;
}

void DelayFlush()
{
    const Control* control = Shared();
    if (control && control->flushDelay.load() > 0)
        Sleep(control->flushDelay.load());
}

// What the simulated radio puts on its pseudo terminal.
void NoteLine(int file, const void* octets, std::size_t count)
{
    static const bool wanted = std::getenv("WAITING_LINE") != nullptr;
    struct stat state {};
    if (!wanted || count > 1000 || fstat(file, &state) != 0 || !S_ISCHR(state.st_mode) ||
        major(state.st_rdev) != PseudoTerminalMajor || minor(state.st_rdev) != PseudoTerminalMinor)
        return;
    char line[2100];
    int size = std::snprintf(line, sizeof line, "line %" PRId64 " ", Now());
    for (std::size_t i = 0; i < count; ++i)
        size += std::snprintf(line + size, 3, "%02X", static_cast<const unsigned char*>(octets)[i]);
    line[size++] = '\n';
    Note(line, size);
}

// The event loop waits in GLib; what else polls on the main thread (the database's library, X replies) keeps
// the window as any other work does.
bool IsEventLoop(const void* caller)
{
    static const void* known = nullptr;
    if (caller == known)
        return true;
    if (gettid() != getpid())
        return false;
    Dl_info info{};
    if (!dladdr(caller, &info) || !std::strstr(info.dli_fname, "libglib"))
        return false;
    known = caller;
    return true;
}

} // namespace

extern "C" {

int poll(pollfd* files, nfds_t count, int timeout)
{
    static auto* const real = Real(&poll, "poll");
    Control* control = Shared();
    if (!control || gettid() != getpid() || !IsEventLoop(__builtin_return_address(0)))
        return real(files, count, timeout);
    if (const int length = control->block.exchange(0))
        Sleep(length);
    const std::int64_t now = Now();
    if (const std::int64_t since = control->busySince.exchange(0)) {
        if (now - since > control->longest)
            control->longest = now - since;
        if (now - since > WorthNoting)
            NoteTime("stall", now, now - since);
    }
    const int result = real(files, count, timeout);
    control->busySince = Now();
    return result;
}

int fsync(int file)
{
    static auto* const real = Real(&fsync, "fsync");
    DelayFlush();
    return real(file);
}

int fdatasync(int file)
{
    static auto* const real = Real(&fdatasync, "fdatasync");
    DelayFlush();
    return real(file);
}

ssize_t write(int file, const void* octets, std::size_t count)
{
    static auto* const real = Real(&write, "write");
    if (Fails(file))
        return -1;
    const ssize_t written = real(file, octets, count);
    if (written > 0)
        NoteLine(file, octets, static_cast<std::size_t>(written));
    return written;
}

ssize_t pwrite64(int file, const void* octets, std::size_t count, off64_t place)
{
    static auto* const real = Real(&pwrite64, "pwrite64");
    return Fails(file) ? -1 : real(file, octets, count, place);
}

int ftruncate64(int file, off64_t size)
{
    static auto* const real = Real(&ftruncate64, "ftruncate64");
    const Control* control = Shared();
    return control && control->failWith.load() == EROFS && Fails(file) ? -1 : real(file, size);
}

int unlink(const char* path)
{
    static auto* const real = Real(&unlink, "unlink");
    return IsRefused(path, O_RDWR) ? -1 : real(path);
}

int open64(const char* path, int flags, ...)
{
    static auto* const real = Real(&open64, "open64");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return IsRefused(path, flags) ? -1 : real(path, flags, mode);
}

// Of libxcb: the bell of the display, which the console rings where there is no sound output.
typedef struct {
    unsigned sequence;
} BellCookie;

BellCookie xcb_bell(void* connection, std::int8_t percent)
{
    using Bell = BellCookie (*)(void*, std::int8_t);
    static const auto real = reinterpret_cast<Bell>(dlsym(RTLD_NEXT, "xcb_bell"));
    NoteTime("bell", Now());
    return real(connection, percent);
}
}
