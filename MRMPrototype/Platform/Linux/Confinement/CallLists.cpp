#include "Platform/Linux/Confinement/CallLists.h"

#include <csignal>

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace murmel::confinement {

namespace {

constexpr std::uint64_t lowHalf = CallFilter::lowHalf;
constexpr std::uint64_t wholeValue = CallFilter::wholeValue;
constexpr std::uint64_t socketTypes = 0xf;  // the rest are flags

/// What every computation does: memory, threads, time, its open descriptors.
void allowComputing(CallFilter& filter) {
  filter.allow({SCMP_SYS(read),
                SCMP_SYS(write),
                SCMP_SYS(readv),
                SCMP_SYS(writev),
                SCMP_SYS(close),
                SCMP_SYS(munmap),
                SCMP_SYS(mremap),
                SCMP_SYS(madvise),
                SCMP_SYS(brk),
                SCMP_SYS(futex),
                SCMP_SYS(set_robust_list),
                SCMP_SYS(rseq),
                SCMP_SYS(sched_yield),
                SCMP_SYS(rt_sigprocmask),
                SCMP_SYS(rt_sigreturn),
                SCMP_SYS(restart_syscall),
                SCMP_SYS(clock_gettime),
                SCMP_SYS(clock_nanosleep),
                SCMP_SYS(nanosleep),
                SCMP_SYS(getrandom),
                SCMP_SYS(exit),
                SCMP_SYS(exit_group)});
  // Threads, not processes. The flags of the newer call lie in memory, where a filter cannot look; the C
  // library then uses the older one.
  filter.allowWhen(SCMP_SYS(clone), {{0, CLONE_THREAD, CLONE_THREAD}});
  filter.hide({SCMP_SYS(clone3), SCMP_SYS(futex_waitv)});
#if defined(MURMEL_SANITIZED)
  // What the instrumentation looks at, at any time.
  filter.allow({SCMP_SYS(sigaltstack), SCMP_SYS(getpid), SCMP_SYS(gettid), SCMP_SYS(getrusage),
                SCMP_SYS(mincore), SCMP_SYS(pipe), SCMP_SYS(pipe2), SCMP_SYS(readlink), SCMP_SYS(openat),
                SCMP_SYS(open), SCMP_SYS(personality), SCMP_SYS(rt_sigaction), SCMP_SYS(newfstatat),
                SCMP_SYS(fstat), SCMP_SYS(lseek), SCMP_SYS(sched_getaffinity), SCMP_SYS(prctl),
                SCMP_SYS(tgkill), SCMP_SYS(getdents64)});
#endif
}

/// Memory that is never executable, for libraries that work only when everything is loaded.
void allowDataMemory(CallFilter& filter) {
  filter.allowWhen(SCMP_SYS(mmap), {{2, PROT_EXEC, 0}});
  filter.allowWhen(SCMP_SYS(mprotect), {{2, PROT_EXEC, 0}});
}

/// Files that may be read, and whatever else a descriptor is of.
void allowReadingFiles(CallFilter& filter) {
  filter.allow({SCMP_SYS(pread64), SCMP_SYS(lseek), SCMP_SYS(fstat), SCMP_SYS(newfstatat),
                SCMP_SYS(getdents64), SCMP_SYS(fadvise64), SCMP_SYS(dup), SCMP_SYS(dup2), SCMP_SYS(dup3),
                SCMP_SYS(getcwd), SCMP_SYS(umask)});
  // Nothing is created or emptied where nothing may be written, with the oldest Landlock either: it lets a
  // file that may be read be emptied by opening it for reading.
  filter.allowWhen(SCMP_SYS(openat), {{2, O_TRUNC, 0}});
  filter.allowWhen(SCMP_SYS(openat), {{2, O_ACCMODE, O_WRONLY}});
  filter.allowWhen(SCMP_SYS(openat), {{2, O_ACCMODE, O_RDWR}});
  // Not those that name an owner, to whom signals are then sent.
  filter.allowValues(SCMP_SYS(fcntl), 1, {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL, F_SETFL});
  filter.allowValues(SCMP_SYS(ioctl), 1, {FIONBIO, FIONREAD, FIOCLEX, TCGETS});
}

void allowWaiting(CallFilter& filter) {
  filter.allow({SCMP_SYS(pipe), SCMP_SYS(pipe2), SCMP_SYS(poll), SCMP_SYS(ppoll), SCMP_SYS(select),
                SCMP_SYS(pselect6), SCMP_SYS(epoll_create1), SCMP_SYS(epoll_ctl), SCMP_SYS(epoll_wait),
                SCMP_SYS(epoll_pwait), SCMP_SYS(eventfd2), SCMP_SYS(alarm), SCMP_SYS(setitimer)});
}

/// Who it is, what the machine has, what it took.
void allowAsking(CallFilter& filter) {
  filter.allow({SCMP_SYS(getpid), SCMP_SYS(gettid), SCMP_SYS(getuid), SCMP_SYS(geteuid), SCMP_SYS(getgid),
                SCMP_SYS(getegid), SCMP_SYS(getppid), SCMP_SYS(uname), SCMP_SYS(sysinfo), SCMP_SYS(getrusage),
                SCMP_SYS(clock_getres), SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(times)});
}

/// Its own threads, signals, limits and priority, and nobody else's.
void allowSettingItselfUp(CallFilter& filter) {
  filter.allow({SCMP_SYS(set_tid_address), SCMP_SYS(arch_prctl), SCMP_SYS(rt_sigaction),
                SCMP_SYS(sigaltstack), SCMP_SYS(getrlimit), SCMP_SYS(setrlimit)});
  for (const int call : {SCMP_SYS(prlimit64), SCMP_SYS(sched_getaffinity), SCMP_SYS(sched_setaffinity),
                         SCMP_SYS(sched_getparam), SCMP_SYS(sched_getscheduler), SCMP_SYS(getsid)})
    filter.allowWhen(call, {{0, lowHalf, 0}});
  filter.allowWhen(SCMP_SYS(setpriority), {{0, lowHalf, PRIO_PROCESS}, {1, lowHalf, 0}});
  filter.allowWhen(SCMP_SYS(getpriority), {{0, lowHalf, PRIO_PROCESS}, {1, lowHalf, 0}});
}

/// Giving up more.
void allowConfiningItself(CallFilter& filter) {
  filter.allow({SCMP_SYS(seccomp), SCMP_SYS(landlock_create_ruleset), SCMP_SYS(landlock_add_rule),
                SCMP_SYS(landlock_restrict_self)});
  filter.allowValues(SCMP_SYS(prctl), 0,
                     {PR_SET_NAME, PR_GET_NAME, PR_SET_NO_NEW_PRIVS, PR_GET_NO_NEW_PRIVS, PR_SET_DUMPABLE,
                      PR_GET_DUMPABLE, PR_SET_SECCOMP, PR_GET_SECCOMP, PR_GET_PDEATHSIG});
}

/// What a program does from its start until it has read its model.
void allowLoading(CallFilter& filter) {
  filter.allow({SCMP_SYS(mmap), SCMP_SYS(mprotect), SCMP_SYS(mlock), SCMP_SYS(mlock2), SCMP_SYS(munlock),
                SCMP_SYS(membarrier)});
  allowReadingFiles(filter);
  allowWaiting(filter);
  allowAsking(filter);
  allowSettingItselfUp(filter);
  allowConfiningItself(filter);
  // Newer forms that would have to be looked at in memory.
  filter.hide({SCMP_SYS(statx), SCMP_SYS(faccessat2), SCMP_SYS(openat2), SCMP_SYS(epoll_pwait2),
               SCMP_SYS(close_range)});
}

void allowChangingFiles(CallFilter& filter) {
  filter.allow({SCMP_SYS(ftruncate),  SCMP_SYS(fallocate), SCMP_SYS(fsync),
                SCMP_SYS(fdatasync),  SCMP_SYS(syncfs),    SCMP_SYS(sync_file_range),
                SCMP_SYS(rename),     SCMP_SYS(renameat),  SCMP_SYS(renameat2),
                SCMP_SYS(unlink),     SCMP_SYS(unlinkat),  SCMP_SYS(rmdir),
                SCMP_SYS(mkdir),      SCMP_SYS(mkdirat),   SCMP_SYS(link),
                SCMP_SYS(linkat),     SCMP_SYS(symlink),   SCMP_SYS(symlinkat),
                SCMP_SYS(fchmod),     SCMP_SYS(flock),     SCMP_SYS(readlink),
                SCMP_SYS(readlinkat), SCMP_SYS(access),    SCMP_SYS(faccessat),
                SCMP_SYS(chdir),      SCMP_SYS(fchdir),    SCMP_SYS(copy_file_range),
                SCMP_SYS(sendfile),   SCMP_SYS(pwrite64),  SCMP_SYS(statfs),
                SCMP_SYS(fstatfs)});
  filter.allowWhen(SCMP_SYS(openat), {{2, O_ACCMODE, O_RDONLY}});
  // Of an open file only: Landlock does not watch over the times of the others.
  filter.allowWhen(SCMP_SYS(utimensat), {{1, wholeValue, 0}});
  filter.allowValues(SCMP_SYS(fcntl), 1,
                     {F_GETLK, F_SETLK, F_SETLKW, F_OFD_GETLK, F_OFD_SETLK, F_OFD_SETLKW});
}

/// What is done on a socket that is there.
void allowMessages(CallFilter& filter) {
  filter.allow({SCMP_SYS(recvfrom), SCMP_SYS(recvmsg), SCMP_SYS(getsockopt), SCMP_SYS(setsockopt),
                SCMP_SYS(getsockname), SCMP_SYS(getpeername), SCMP_SYS(shutdown)});
  // Without an address: to the other end only.
  filter.allowWhen(SCMP_SYS(sendto), {{4, wholeValue, 0}});
}

void allowSockets(CallFilter& filter, CallNeeds::Sockets sockets) {
  using Sockets = CallNeeds::Sockets;
  if (sockets == Sockets::none) return;
  allowMessages(filter);
  if (sockets == Sockets::internet) {
    for (const std::uint64_t family : {AF_INET, AF_INET6})
      for (const std::uint64_t type : {SOCK_STREAM, SOCK_DGRAM})
        filter.allowWhen(SCMP_SYS(socket), {{0, lowHalf, family}, {1, socketTypes, type}});
    // Two ends of this process's own, with which the library wakes itself.
    filter.allowWhen(SCMP_SYS(socketpair), {{0, lowHalf, AF_UNIX}});
    filter.allow(
        {SCMP_SYS(connect), SCMP_SYS(sendto), SCMP_SYS(sendmsg), SCMP_SYS(sendmmsg), SCMP_SYS(recvmmsg)});
    return;
  }
  // Streams: a datagram could be sent to any socket of the user.
  filter.allowWhen(SCMP_SYS(socket), {{0, lowHalf, AF_UNIX}, {1, socketTypes, SOCK_STREAM}});
  if (sockets == Sockets::serves)
    filter.allow({SCMP_SYS(bind), SCMP_SYS(listen), SCMP_SYS(accept), SCMP_SYS(accept4)});
  if (sockets == Sockets::unixOnly) filter.allow({SCMP_SYS(connect), SCMP_SYS(sendmsg)});
}

}  // namespace

std::optional<CallProgram> launchedProgram(const CallNeeds& needs) {
  CallFilter filter;
  allowComputing(filter);
  allowLoading(filter);
  if (needs.writes) allowChangingFiles(filter);
  allowSockets(filter, needs.sockets);
  if (needs.forks) {
    constexpr std::uint64_t namespaces = CLONE_NEWNS | CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET |
                                         CLONE_NEWIPC | CLONE_NEWUTS | CLONE_NEWCGROUP | CLONE_PARENT;
    filter.allowWhen(SCMP_SYS(clone), {{0, namespaces, 0}});
  }
  filter.allowWhen(SCMP_SYS(execveat), {{5, wholeValue, needs.password}});
  return filter.program();
}

std::optional<CallProgram> readyWorker() {
  CallFilter filter;
  allowComputing(filter);
  allowDataMemory(filter);
  filter.allowValues(SCMP_SYS(prctl), 0, {PR_SET_NAME});
  // From now on nobody looks into the process: said with the first request.
  filter.allowWhen(SCMP_SYS(prctl), {{0, lowHalf, PR_SET_DUMPABLE}, {1, wholeValue, 0}});
  filter.allowWhen(SCMP_SYS(sched_getaffinity), {{0, lowHalf, 0}});
  return filter.program();
}

std::optional<CallProgram> connectedKeeper() {
  CallFilter filter;
  allowComputing(filter);
  allowDataMemory(filter);
  allowMessages(filter);
  filter.allowValues(SCMP_SYS(prctl), 0, {PR_SET_NAME});
  filter.allow({SCMP_SYS(sendmsg), SCMP_SYS(poll), SCMP_SYS(ppoll), SCMP_SYS(rt_sigaction)});
  filter.allowValues(SCMP_SYS(fcntl), 1, {F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL, F_SETFL});
  return filter.program();
}

}  // namespace murmel::confinement
