#include "SystemFaults.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <mutex>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brisalon::tests {

namespace {

enum class Mode { off, record, fail };

std::atomic<Mode> mode = Mode::off;
std::mutex mutex; // over the rest
std::vector<SystemCall> requests;
std::map<std::pair<std::string, std::string>, int> turns;
SystemCall chosen;
int chosenError = 0;
bool hasFailed = false;

// Of allocations: below zero, none is counted.
std::atomic<int> allocations = -1;
std::atomic<int> failingNumber = -1;
std::atomic<std::size_t> allocatedBytes = 0;

/// What a thread does for this file itself is no request of the program's.
thread_local bool isInside = false;

struct Inside {
    Inside() { isInside = true; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    ~Inside() { isInside = false; }
};

/// Where the descriptor leads.
std::string pathOf(int descriptor)
{
    if (descriptor == AT_FDCWD)
        return ".";
    std::array<char, 4096> path;
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    return length < 0 ? "?" : std::string(path.data(), static_cast<std::size_t>(length));
}

/// Whether the request has to fail; the error number is set then.
bool fails(const char* function, int descriptor, const char* name)
{
    const Mode now = mode;
    if (now == Mode::off || isInside)
        return false;
    const Inside inside;
    std::string path = name && *name == '/' ? "" : pathOf(descriptor);
    if (name && *name)
        path += (path.empty() || path.ends_with('/') ? "" : "/") + std::string(name);
    const std::scoped_lock lock(mutex);
    SystemCall request{function, path, turns[{function, path}]++};
    if (now == Mode::record) {
        requests.push_back(std::move(request));
        return false;
    }
    if (hasFailed || request != chosen)
        return false;
    hasFailed = true;
    errno = chosenError;
    return true;
}

/// The system's function of that name and of the type of the one defined here.
template <typename Function>
Function* real(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

void begin(Mode next)
{
    const std::scoped_lock lock(mutex);
    requests.clear();
    turns.clear();
    hasFailed = false;
    mode = next;
}

} // namespace

std::span<const int> SystemFaults::errorsOf(const std::string& function)
{
    static const std::map<std::string, std::vector<int>> errors{
        {"openat", {EACCES, ENOENT, EMFILE, ENOMEM, EINTR, EIO, ELOOP}},
        {"getdents64", {EIO, ENOENT, ENOMEM, EINTR}},
        {"fstatat", {EACCES, ENOENT, ENOMEM, EINTR, EIO}},
        {"statx", {EACCES, ENOENT, ENOMEM, EINTR, EIO}},
        {"readlinkat", {EACCES, ENOENT, EIO}},
        {"fstatfs", {EIO, EACCES}},
        {"mkdirat", {EACCES, ENOSPC, EROFS, EIO}},
        {"read", {EIO, EINTR}},
        {"write", {ENOSPC, EIO, EDQUOT, EINTR}},
        {"fsync", {EIO, ENOSPC}},
        {"syncfs", {EIO}},
        {"fdatasync", {EIO}},
        {"close", {EIO}},
        {"renameat2", {EACCES, ENOENT, EXDEV, EBUSY, ENOSPC, EIO, EEXIST}},
        {"renameat", {EACCES, ENOENT, EXDEV, EBUSY, ENOSPC, EIO}},
        {"unlinkat", {EACCES, ENOENT, EIO}},
        {"faccessat", {EACCES, EIO}},
    };
    return errors.at(function);
}

std::vector<SystemCall> SystemFaults::requestsOf(const std::function<void()>& body)
{
    begin(Mode::record);
    body();
    mode = Mode::off;
    return requests;
}

bool SystemFaults::failing(const SystemCall& request, int error, const std::function<void()>& body)
{
    chosen = request;
    chosenError = error;
    begin(Mode::fail);
    body();
    mode = Mode::off;
    return hasFailed;
}

int SystemFaults::allocationsOf(const std::function<void()>& body)
{
    allocations = 0;
    body();
    return allocations.exchange(-1);
}

std::size_t SystemFaults::bytesAllocatedBy(const std::function<void()>& body)
{
    const std::size_t before = allocatedBytes;
    body();
    return allocatedBytes - before;
}

void SystemFaults::failingAllocation(int number, const std::function<void()>& body)
{
    failingNumber = number;
    allocations = 0;
    body();
    allocations = -1;
    failingNumber = -1;
}

} // namespace brisalon::tests

using namespace brisalon::tests;

// The system's functions. The names and types are those of the C library.
extern "C" {

int openat(int folder, const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t permissions = (flags & (O_CREAT | __O_TMPFILE)) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    static const auto next = real<int(int, const char*, int, ...)>("openat");
    return fails("openat", folder, path) ? -1 : next(folder, path, flags, permissions);
}

int close(int descriptor)
{
    static const auto next = real<int(int)>("close");
    // A descriptor is closed whatever the system reports.
    const bool isFailing = fails("close", descriptor, "");
    const int result = next(descriptor);
    if (isFailing)
        errno = chosenError;
    return isFailing ? -1 : result;
}

/// Any other: its result and name, its parameters, what it may throw, and its arguments, of
/// which the first is the descriptor that the path, given last, is relative to.
#define PASSED_ON(Result, name, parameters, qualifier, path, first, ...)                           \
    Result name parameters qualifier                                                               \
    {                                                                                              \
        static const auto next = real<Result parameters>(#name);                                   \
        return fails(#name, first, path) ? -1 : next(first __VA_OPT__(, ) __VA_ARGS__);            \
    }

PASSED_ON(int, fstatat, (int folder, const char* path, struct stat* status, int flags), noexcept,
          path, folder, path, status, flags)
PASSED_ON(int, statx,
          (int folder, const char* path, int flags, unsigned mask, struct statx* status), noexcept,
          path, folder, path, flags, mask, status)
PASSED_ON(int, fstatfs, (int descriptor, struct statfs* status), noexcept, "", descriptor, status)
PASSED_ON(ssize_t, readlinkat, (int folder, const char* path, char* buffer, size_t size), noexcept,
          path, folder, path, buffer, size)
PASSED_ON(int, mkdirat, (int folder, const char* path, mode_t permissions), noexcept, path, folder,
          path, permissions)
PASSED_ON(ssize_t, read, (int descriptor, void* buffer, size_t size), , "", descriptor, buffer,
          size)
PASSED_ON(ssize_t, write, (int descriptor, const void* buffer, size_t size), , "", descriptor,
          buffer, size)
PASSED_ON(int, fsync, (int descriptor), , "", descriptor)
PASSED_ON(int, fdatasync, (int descriptor), , "", descriptor)
PASSED_ON(int, syncfs, (int descriptor), noexcept, "", descriptor)
PASSED_ON(int, renameat2, (int from, const char* path, int to, const char* name, unsigned flags),
          noexcept, path, from, path, to, name, flags)
PASSED_ON(int, renameat, (int from, const char* path, int to, const char* name), noexcept, path,
          from, path, to, name)
PASSED_ON(int, unlinkat, (int folder, const char* path, int flags), noexcept, path, folder, path,
          flags)
PASSED_ON(int, faccessat, (int folder, const char* path, int wanted, int flags), noexcept, path,
          folder, path, wanted, flags)

long syscall(long number, ...) noexcept
{
    va_list rest;
    va_start(rest, number);
    std::array<long, 6> values;
    for (long& value : values)
        value = va_arg(rest, long);
    va_end(rest);
    static const auto next = real<long(long, ...)>("syscall");
    const auto* const name = reinterpret_cast<const char*>(values[1]);
    if (number == SYS_getdents64 && fails("getdents64", static_cast<int>(values[0]), ""))
        return -1;
    if (number == SYS_openat2 && fails("openat", static_cast<int>(values[0]), name))
        return -1;
    return next(number, values[0], values[1], values[2], values[3], values[4], values[5]);
}

} // extern "C"

void* operator new(std::size_t size)
{
    if (allocations >= 0 && !isInside && allocations.fetch_add(1) == failingNumber)
        throw std::bad_alloc();
    allocatedBytes += size;
    if (void* const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t& /*none*/) noexcept
{
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
