// Preloaded into a program, makes the n-th call of a kind fail: of the C library's, and of SQLite's
// by name. The environment says which:
//
//     FAILING_CALL    the kind, as below: "write"
//     FAILING_NUMBER  which call of that kind, from 1
//     FAILING_ERROR   errno, or SQLite's result
//     FAILING_LASTS   1: that call and all that follow
//     FAILING_NOTE    a file that is written when a call has been made to fail: "write 7 libfoo.so"
//
// Calls count by kind, in the order in which they begin, whatever thread they come from.
//
// Left alone: what GLib writes to and reads from its own wake-up descriptor, which holds 8 bytes in
// memory and cannot run out of anything; and what SQLite calls of itself.

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sqlite3.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Order {
    const char* kind = std::getenv("FAILING_CALL");
    long number = GetNumber("FAILING_NUMBER");
    int error = static_cast<int>(GetNumber("FAILING_ERROR"));
    bool lasts = GetNumber("FAILING_LASTS") == 1;
    const char* note = std::getenv("FAILING_NOTE");
    // The process that was started with it; what it starts in turn is left alone.
    pid_t process = getpid();
    std::atomic<long> calls{0};

    static long GetNumber(const char* name) {
        const char* text = std::getenv(name);
        return text == nullptr ? 0 : std::strtol(text, nullptr, 10);
    }
};

Order& GetOrder() {
    static Order order;
    return order;
}

// The error that SQLite is made to report for a call that it has not seen.
thread_local int injectedError = SQLITE_OK;

const char* GetCaller(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return "?";
    const char* slash = std::strrchr(info.dli_fname, '/');
    return slash == nullptr ? info.dli_fname : slash + 1;
}

bool IsLeftAlone(const char* kind, const char* caller) {
    if (std::strncmp(kind, "sqlite", 6) == 0)
        return std::strncmp(caller, "libsqlite3", 10) == 0;
    const bool isWakeUp = std::strcmp(kind, "write") == 0 || std::strcmp(kind, "read") == 0;
    return isWakeUp && std::strncmp(caller, "libglib", 7) == 0;
}

// Past whatever is counted here: by the system call itself.
void WriteNote(const Order& order, long number, const char* caller) {
    if (order.note == nullptr)
        return;
    char line[256];
    const int size = std::snprintf(line, sizeof line, "%s %ld %s\n", order.kind, number, caller);
    const long file = syscall(SYS_open, order.note, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file >= 0) {
        syscall(SYS_write, file, line, size);
        syscall(SYS_close, file);
    }
}

bool IsToFail(const char* kind, const void* callerAddress) {
    Order& order = GetOrder();
    if (order.kind == nullptr || std::strcmp(order.kind, kind) != 0 || getpid() != order.process)
        return false;
    const int before = errno;
    const char* caller = GetCaller(callerAddress);
    if (IsLeftAlone(kind, caller)) {
        errno = before;
        return false;
    }
    const long number = ++order.calls;
    const bool fails = order.lasts ? number >= order.number : number == order.number;
    if (fails)
        WriteNote(order, number, caller);
    errno = fails ? order.error : before;
    return fails;
}

bool IsSqliteToFail(const char* kind, const void* callerAddress) {
    const bool fails = IsToFail(kind, callerAddress);
    injectedError = fails ? GetOrder().error : SQLITE_OK;
    return fails;
}

template <class Function> Function* FindNext(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

mode_t GetMode(int flags, va_list arguments) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

// A list of parameters or arguments comes in parentheses of its own.
// NOLINTBEGIN(bugprone-macro-parentheses)

#define CALLER __builtin_return_address(0)
#define NEXT(name) (FindNext<decltype(name)>(#name))

// A function that fails with `failed` and errno, or goes on to the next library's.
#define MAY_FAIL(kind, result, failed, name, parameters, arguments)                                                    \
    extern "C" __attribute__((visibility("default"))) result name parameters {                                         \
        if (IsToFail(kind, CALLER))                                                                                    \
            return failed;                                                                                             \
        return NEXT(name) arguments;                                                                                   \
    }

// The same for one that returns the error itself.
#define MAY_RETURN_ERROR(kind, name, parameters, arguments)                                                            \
    extern "C" __attribute__((visibility("default"))) int name parameters {                                            \
        if (IsToFail(kind, CALLER))                                                                                    \
            return errno;                                                                                              \
        return NEXT(name) arguments;                                                                                   \
    }

#define MAY_REFUSE(kind, name, parameters, arguments)                                                                  \
    extern "C" __attribute__((visibility("default"))) int name parameters {                                            \
        if (IsSqliteToFail(kind, CALLER))                                                                              \
            return GetOrder().error;                                                                                   \
        return NEXT(name) arguments;                                                                                   \
    }

#define MAY_FAIL_TO_OPEN(name)                                                                                         \
    extern "C" __attribute__((visibility("default"))) int name(const char* path, int flags, ...) {                     \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const mode_t mode = GetMode(flags, arguments);                                                                 \
        va_end(arguments);                                                                                             \
        if (IsToFail("open", CALLER))                                                                                  \
            return -1;                                                                                                 \
        return NEXT(name)(path, flags, mode);                                                                          \
    }

// NOLINTEND(bugprone-macro-parentheses)

MAY_FAIL_TO_OPEN(open)
MAY_FAIL_TO_OPEN(open64)
MAY_FAIL("open", FILE*, nullptr, fopen, (const char* path, const char* mode), (path, mode))
MAY_FAIL("open", FILE*, nullptr, fopen64, (const char* path, const char* mode), (path, mode))

MAY_FAIL("read", ssize_t, -1, read, (int fd, void* to, size_t size), (fd, to, size))
MAY_FAIL("read", ssize_t, -1, pread64, (int fd, void* to, size_t size, off64_t at), (fd, to, size, at))
MAY_FAIL("write", ssize_t, -1, write, (int fd, const void* from, size_t size), (fd, from, size))
MAY_FAIL("write", ssize_t, -1, pwrite64, (int fd, const void* from, size_t size, off64_t at), (fd, from, size, at))
MAY_FAIL("sync", int, -1, fsync, (int fd), (fd))
MAY_FAIL("sync", int, -1, fdatasync, (int fd), (fd))
MAY_FAIL("truncate", int, -1, ftruncate64, (int fd, off64_t size), (fd, size))
MAY_FAIL("stat", int, -1, stat, (const char* path, struct stat* to), (path, to))
MAY_FAIL("stat", int, -1, lstat, (const char* path, struct stat* to), (path, to))
MAY_FAIL("stat", int, -1, fstat, (int fd, struct stat* to), (fd, to))
MAY_FAIL("stat", int, -1, stat64, (const char* path, struct stat64* to), (path, to))
MAY_FAIL("stat", int, -1, fstat64, (int fd, struct stat64* to), (fd, to))
MAY_FAIL("unlink", int, -1, unlink, (const char* path), (path))
MAY_FAIL("rename", int, -1, rename, (const char* from, const char* to), (from, to))
MAY_FAIL("lock", int, -1, flock, (int fd, int operation), (fd, operation))

MAY_FAIL("socket", int, -1, socket, (int domain, int type, int protocol), (domain, type, protocol))
MAY_FAIL("bind", int, -1, bind, (int fd, const sockaddr* address, socklen_t size), (fd, address, size))
MAY_FAIL("listen", int, -1, listen, (int fd, int backlog), (fd, backlog))
MAY_FAIL("connect", int, -1, connect, (int fd, const sockaddr* address, socklen_t size), (fd, address, size))
MAY_FAIL("accept", int, -1, accept4, (int fd, sockaddr* address, socklen_t* size, int flags),
         (fd, address, size, flags))
MAY_FAIL("send", ssize_t, -1, send, (int fd, const void* from, size_t size, int flags), (fd, from, size, flags))
MAY_FAIL("send", ssize_t, -1, sendmsg, (int fd, const msghdr* message, int flags), (fd, message, flags))
MAY_FAIL("receive", ssize_t, -1, recv, (int fd, void* to, size_t size, int flags), (fd, to, size, flags))
MAY_FAIL("receive", ssize_t, -1, recvmsg, (int fd, msghdr* message, int flags), (fd, message, flags))
MAY_FAIL("option", int, -1, getsockopt, (int fd, int level, int name, void* value, socklen_t* size),
         (fd, level, name, value, size))
MAY_FAIL("option", int, -1, setsockopt, (int fd, int level, int name, const void* value, socklen_t size),
         (fd, level, name, value, size))
MAY_FAIL("epoll", int, -1, epoll_create1, (int flags), (flags))
MAY_FAIL("epoll", int, -1, epoll_ctl, (int epoll, int operation, int fd, epoll_event* event),
         (epoll, operation, fd, event))
MAY_FAIL("epoll", int, -1, epoll_wait, (int epoll, epoll_event* ready, int count, int limit),
         (epoll, ready, count, limit))
MAY_FAIL("poll", int, -1, poll, (pollfd * of, nfds_t count, int limit), (of, count, limit))
MAY_FAIL("eventfd", int, -1, eventfd, (unsigned count, int flags), (count, flags))
MAY_FAIL("signalfd", int, -1, signalfd, (int fd, const sigset_t* signals, int flags), (fd, signals, flags))
MAY_FAIL("random", ssize_t, -1, getrandom, (void* to, size_t size, unsigned flags), (to, size, flags))
MAY_RETURN_ERROR("thread", pthread_create,
                 (pthread_t * thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument),
                 (thread, attributes, run, argument))

// A function that returns twice cannot be stood in front of. The child of the one that is called
// instead has memory of its own, which makes no difference to one that only starts a program.
extern "C" __attribute__((visibility("default"))) pid_t vfork() {
    return IsToFail("fork", CALLER) ? -1 : fork();
}

extern "C" __attribute__((visibility("default"))) int sqlite3_open_v2(const char* name, sqlite3** database, int flags,
                                                                      const char* system) {
    if (!IsSqliteToFail("sqlite-open", CALLER))
        return NEXT(sqlite3_open_v2)(name, database, flags, system);
    // As SQLite does it: without memory there is nothing to ask for the error.
    *database = nullptr;
    if (injectedError != SQLITE_NOMEM)
        NEXT(sqlite3_open_v2)(name, database, flags, system);
    return GetOrder().error;
}
extern "C" __attribute__((visibility("default"))) int sqlite3_prepare_v3(sqlite3* database, const char* text, int size,
                                                                         unsigned flags, sqlite3_stmt** statement,
                                                                         const char** rest) {
    if (!IsSqliteToFail("sqlite-prepare", CALLER))
        return NEXT(sqlite3_prepare_v3)(database, text, size, flags, statement, rest);
    *statement = nullptr;
    return GetOrder().error;
}
MAY_REFUSE("sqlite-step", sqlite3_step, (sqlite3_stmt * statement), (statement))
MAY_REFUSE("sqlite-exec", sqlite3_exec,
           (sqlite3 * database, const char* text, int (*row)(void*, int, char**, char**), void* data, char** error),
           (database, text, row, data, error))
MAY_REFUSE("sqlite-bind", sqlite3_bind_int64, (sqlite3_stmt * statement, int place, sqlite3_int64 value),
           (statement, place, value))
MAY_REFUSE("sqlite-bind", sqlite3_bind_null, (sqlite3_stmt * statement, int place), (statement, place))
MAY_REFUSE("sqlite-bind", sqlite3_bind_text64,
           (sqlite3_stmt * statement, int place, const char* text, sqlite3_uint64 size, void (*release)(void*),
            unsigned char encoding),
           (statement, place, text, size, release, encoding))

// A text that there was no memory for.
extern "C" __attribute__((visibility("default"))) const unsigned char* sqlite3_column_text(sqlite3_stmt* statement,
                                                                                           int column) {
    return IsSqliteToFail("sqlite-text", CALLER) ? nullptr : NEXT(sqlite3_column_text)(statement, column);
}
extern "C" __attribute__((visibility("default"))) const void* sqlite3_column_text16(sqlite3_stmt* statement,
                                                                                    int column) {
    return IsSqliteToFail("sqlite-text", CALLER) ? nullptr : NEXT(sqlite3_column_text16)(statement, column);
}

// It has no length either.
extern "C" __attribute__((visibility("default"))) int sqlite3_column_bytes(sqlite3_stmt* statement, int column) {
    return injectedError != SQLITE_OK ? 0 : NEXT(sqlite3_column_bytes)(statement, column);
}
extern "C" __attribute__((visibility("default"))) int sqlite3_column_bytes16(sqlite3_stmt* statement, int column) {
    return injectedError != SQLITE_OK ? 0 : NEXT(sqlite3_column_bytes16)(statement, column);
}

extern "C" __attribute__((visibility("default"))) const char* sqlite3_errmsg(sqlite3* database) {
    return injectedError != SQLITE_OK ? sqlite3_errstr(injectedError) : NEXT(sqlite3_errmsg)(database);
}
extern "C" __attribute__((visibility("default"))) int sqlite3_errcode(sqlite3* database) {
    return injectedError != SQLITE_OK ? injectedError : NEXT(sqlite3_errcode)(database);
}
