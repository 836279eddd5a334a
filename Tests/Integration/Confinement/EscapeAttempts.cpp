#include "EscapeAttempts.h"

#include "Support/Forks.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/bpf.h>
#include <linux/perf_event.h>
#include <mqueue.h>
#include <sched.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace murmel {

namespace {

/// n: connections to the network; u: Unix sockets; f: new processes; x: executable memory.
struct Attempt {
  const char* name;
  char kind;  ///< '-' for what nobody may
  bool (*succeeds)(const Prey& prey);
};

bool ok(long result) {
  return result >= 0;
}

bool opens(const std::string& path, int flags) {
  return ok(::open(path.c_str(), flags, 0600));
}

bool leavesTrace(const char* path) {
  return opens(path, O_RDWR | O_CREAT) && ok(::unlink(path));
}

bool forked(long child) {
  if (child == 0) ::_exit(0);
  if (child > 0) ::waitpid(static_cast<pid_t>(child), nullptr, 0);
  return child > 0;
}

bool reachesInternet(const Prey& prey, int type) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(prey.port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int socket = ::socket(AF_INET, type, 0);
  return ok(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address));
}

bool reachesSocket(const std::string& name, bool isAbstract) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path + (isAbstract ? 1 : 0), name.data(), name.size());
  const auto size = offsetof(sockaddr_un, sun_path) + name.size() + (isAbstract ? 1 : 0);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  return ok(::connect(socket, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size)));
}

template <class... Arguments>
bool call(long number, Arguments... arguments) {
  return ok(::syscall(number, arguments...));
}

const std::string& folderOf(const std::string& file) {
  static std::string folder;
  return folder = file.substr(0, file.rfind('/'));
}

const Attempt attempts[] = {
    // The user's files.
    {"read a file", '-', [](const Prey& p) { return opens(p.file, O_RDONLY); }},
    {"write a file", '-', [](const Prey& p) { return opens(p.file, O_WRONLY); }},
    {"append to a file", '-', [](const Prey& p) { return opens(p.file, O_WRONLY | O_APPEND); }},
    {"create a file", '-', [](const Prey& p) { return opens(p.file + ".new", O_WRONLY | O_CREAT); }},
    {"create a nameless file", '-',
     [](const Prey& p) { return opens(folderOf(p.file), O_TMPFILE | O_RDWR); }},
    {"open with openat2", '-',
     [](const Prey& p) {
       const std::uint64_t how[3] = {O_RDONLY, 0, 0};
       return call(SYS_openat2, AT_FDCWD, p.file.c_str(), how, sizeof how);
     }},
    {"truncate a file", '-', [](const Prey& p) { return ok(::truncate(p.file.c_str(), 1)); }},
    {"empty a file by opening it", '-', [](const Prey& p) { return opens(p.file, O_RDONLY | O_TRUNC); }},
    {"empty a library by opening it", '-',
     [](const Prey&) { return opens("/lib64/ld-linux-x86-64.so.2", O_RDONLY | O_TRUNC | O_DIRECTORY); }},
    {"list a folder", '-', [](const Prey& p) { return opens(folderOf(p.file), O_RDONLY | O_DIRECTORY); }},
    {"stat a file", '-',
     [](const Prey& p) {
       struct stat status {};
       return ok(::stat(p.file.c_str(), &status));
     }},
    {"statx a file", '-',
     [](const Prey& p) {
       struct statx status {};
       return ok(::statx(AT_FDCWD, p.file.c_str(), 0, STATX_BASIC_STATS, &status));
     }},
    {"access a file", '-', [](const Prey& p) { return ok(::access(p.file.c_str(), F_OK)); }},
    {"read a link", '-',
     [](const Prey& p) {
       char target[8];
       return ok(::readlink((p.file + ".link").c_str(), target, sizeof target));
     }},
    {"change a mode", '-', [](const Prey& p) { return ok(::chmod(p.file.c_str(), 0600)); }},
    {"change an owner", '-',
     [](const Prey& p) { return ok(::chown(p.file.c_str(), ::geteuid(), ::getegid())); }},
    {"change times", '-',
     [](const Prey& p) { return ok(::utimensat(AT_FDCWD, p.file.c_str(), nullptr, 0)); }},
    {"set an attribute", '-',
     [](const Prey& p) { return ok(::setxattr(p.file.c_str(), "user.murmel", "x", 1, 0)); }},
    {"list attributes", '-', [](const Prey& p) { return ok(::listxattr(p.file.c_str(), nullptr, 0)); }},
    {"rename a file", '-',
     [](const Prey& p) { return ok(::rename(p.file.c_str(), (p.file + ".gone").c_str())); }},
    {"remove a file", '-', [](const Prey& p) { return ok(::unlink((p.file + ".link").c_str())); }},
    {"link a file", '-',
     [](const Prey& p) { return ok(::link(p.file.c_str(), (p.file + ".hard").c_str())); }},
    {"make a link", '-', [](const Prey& p) { return ok(::symlink("x", (p.file + ".soft").c_str())); }},
    {"make a folder", '-', [](const Prey& p) { return ok(::mkdir((p.file + ".d").c_str(), 0700)); }},
    {"make a pipe", '-', [](const Prey& p) { return ok(::mkfifo((p.file + ".p").c_str(), 0600)); }},
    {"ask for the file system", '-',
     [](const Prey& p) {
       struct statfs status {};
       return ok(::statfs(folderOf(p.file).c_str(), &status));
     }},
    {"enter a folder", '-', [](const Prey& p) { return ok(::chdir(folderOf(p.file).c_str())); }},
    {"change the root", '-', [](const Prey& p) { return ok(::chroot(folderOf(p.file).c_str())); }},
    {"watch a folder", '-',
     [](const Prey& p) {
       return ok(::inotify_add_watch(::inotify_init1(0), folderOf(p.file).c_str(), IN_OPEN));
     }},
    {"name a file's handle", '-',
     [](const Prey& p) {
       alignas(8) char handle[256]{};
       *reinterpret_cast<unsigned*>(handle) = 128;
       int mount = 0;
       return call(SYS_name_to_handle_at, AT_FDCWD, p.file.c_str(), handle, &mount, 0);
     }},
    {"mount", '-',
     [](const Prey& p) {
       const auto& folder = folderOf(p.file);
       return ok(::mount("x", folder.c_str(), "tmpfs", 0, nullptr)) && ok(::umount(folder.c_str()));
     }},
    {"make a user namespace", '-', [](const Prey&) { return ok(::unshare(CLONE_NEWUSER)); }},
    {"write to the shared memory's folder", '-',
     [](const Prey&) { return leavesTrace("/dev/shm/murmel-escape"); }},
    {"write to the temporary folder", '-', [](const Prey&) { return leavesTrace("/tmp/murmel-escape"); }},
    // Other processes.
    {"fork", 'f', [](const Prey&) { return forked(::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }},
    {"vfork", '-', [](const Prey&) { return forked(::syscall(SYS_clone3, nullptr, 0)); }},
    {"execute a program", '-',
     [](const Prey&) {
       char* const none[] = {nullptr};
       ::execve("/bin/true", none, none);  // would end without a report
       return errno != EPERM && errno != ENOENT;
     }},
    {"execute an open program", '-',
     [](const Prey&) {
       char* const none[] = {nullptr};
       const int program = ::open("/lib64/ld-linux-x86-64.so.2", O_PATH);
       return call(SYS_execveat, program, "", none, none, AT_EMPTY_PATH) || errno != EPERM;
     }},
    {"signal a process", '-', [](const Prey& p) { return ok(::kill(p.process, 0)); }},
    {"signal a thread", '-', [](const Prey& p) { return call(SYS_tgkill, p.process, p.process, 0); }},
    {"queue a signal", '-',
     [](const Prey& p) {
       siginfo_t info{};
       info.si_code = SI_QUEUE;
       return call(SYS_rt_sigqueueinfo, p.process, 0, &info);
     }},
    {"signal a process by its descriptor", '-',
     [](const Prey& p) { return call(SYS_pidfd_open, p.process, 0); }},
    {"be signalled for a process", '-', [](const Prey& p) { return ok(::fcntl(0, F_SETOWN, p.process)); }},
    {"trace a process", '-', [](const Prey& p) { return ok(::ptrace(PTRACE_SEIZE, p.process, 0, 0)); }},
    {"read a process's memory", '-',
     [](const Prey& p) {
       char byte = 0;
       iovec local{&byte, 1};
       iovec remote{const_cast<char*>(p.file.data()), 1};
       return ok(::process_vm_readv(p.process, &local, 1, &remote, 1, 0));
     }},
    {"open a process's memory", '-',
     [](const Prey& p) { return opens("/proc/" + std::to_string(p.process) + "/mem", O_RDONLY); }},
    {"read a process's arguments", '-',
     [](const Prey& p) { return opens("/proc/" + std::to_string(p.process) + "/cmdline", O_RDONLY); }},
    {"limit a process", '-',
     [](const Prey& p) {
       rlimit limit{};
       return ok(::prlimit(p.process, RLIMIT_CPU, nullptr, &limit));
     }},
    {"slow a process down", '-',
     [](const Prey& p) {
       const auto process = static_cast<id_t>(p.process);
       return ok(::setpriority(PRIO_PROCESS, process, ::getpriority(PRIO_PROCESS, process)));
     }},
    {"schedule a process", '-',
     [](const Prey& p) {
       const sched_param parameters{};
       return ok(::sched_setscheduler(p.process, SCHED_OTHER, &parameters));
     }},
    {"pin a process", '-',
     [](const Prey& p) {
       cpu_set_t all;
       std::memset(&all, 0xff, sizeof all);
       return ok(::sched_setaffinity(p.process, sizeof all, &all));
     }},
    {"compare processes", '-', [](const Prey& p) { return call(SYS_kcmp, p.process, p.process, 1, 0, 0); }},
    // What processes share.
    {"attach shared memory", '-',
     [](const Prey& p) {
       return ::shmat(p.sharedMemory, nullptr, SHM_RDONLY) != reinterpret_cast<void*>(-1);
     }},
    {"make shared memory", '-',
     [](const Prey&) {
       const int memory = ::shmget(IPC_PRIVATE, 4096, 0600);
       return ok(memory) && ok(::shmctl(memory, IPC_RMID, nullptr));
     }},
    {"read a message queue", '-',
     [](const Prey& p) {
       char message[64];
       return ok(::msgrcv(p.messages, message, sizeof message - sizeof(long), 0, IPC_NOWAIT));
     }},
    {"make a semaphore", '-',
     [](const Prey&) {
       const int semaphore = ::semget(IPC_PRIVATE, 1, 0600);
       return ok(semaphore) && ok(::semctl(semaphore, 0, IPC_RMID));
     }},
    {"make a POSIX message queue", '-',
     [](const Prey&) {
       return call(SYS_mq_open, "murmel-escape", O_RDWR | O_CREAT, 0600, nullptr) &&
              call(SYS_mq_unlink, "murmel-escape");
     }},
    {"search a key ring", '-', [](const Prey&) { return call(SYS_keyctl, 0, -3, 1); }},
    // Connections.
    {"connect", 'n', [](const Prey& p) { return reachesInternet(p, SOCK_STREAM); }},
    {"send a datagram", 'n', [](const Prey& p) { return reachesInternet(p, SOCK_DGRAM); }},
    {"serve", '-',
     [](const Prey&) {
       const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
       return ok(socket) && ok(::listen(socket, 1));
     }},
    {"reach a Unix socket", '-', [](const Prey& p) { return reachesSocket(p.socket, false); }},
    {"reach an abstract socket", '-', [](const Prey& p) { return reachesSocket(p.abstractSocket, true); }},
    {"ask for the network's settings", '-',
     [](const Prey&) { return ok(::socket(AF_NETLINK, SOCK_RAW, 0)); }},
    {"send raw packets", '-', [](const Prey&) { return ok(::socket(AF_PACKET, SOCK_RAW, 0)); }},
    {"reach the host of a virtual computer", '-',
     [](const Prey&) { return ok(::socket(AF_VSOCK, SOCK_STREAM, 0)); }},
    // The kernel.
    {"queue calls", '-',
     [](const Prey&) {
       char parameters[256]{};
       return call(SYS_io_uring_setup, 4, parameters);
     }},
    {"load a kernel program", '-',
     [](const Prey&) {
       bpf_attr wanted{};
       wanted.map_type = BPF_MAP_TYPE_ARRAY;
       wanted.key_size = wanted.value_size = 4;
       wanted.max_entries = 1;
       return call(SYS_bpf, BPF_MAP_CREATE, &wanted, sizeof wanted);
     }},
    {"measure", '-',
     [](const Prey& p) {
       perf_event_attr wanted{};
       wanted.type = PERF_TYPE_SOFTWARE;
       wanted.size = sizeof wanted;
       return call(SYS_perf_event_open, &wanted, p.process, -1, -1, 0);
     }},
    {"handle page faults", '-', [](const Prey&) { return call(SYS_userfaultfd, 0); }},
    {"read the kernel's log", '-', [](const Prey&) { return call(SYS_syslog, 10, nullptr, 0); }},
    {"change the personality", '-', [](const Prey&) { return call(SYS_personality, 0x0040000); }},
    {"type into the terminal", '-',
     [](const Prey&) { return ok(::ioctl(0, TIOCSTI, "x")) || errno == ENOTTY; }},
    {"make a file of memory", '-', [](const Prey&) { return ok(::memfd_create("x", 0)); }},
    {"map executable memory", 'x',
     [](const Prey&) {
       return ::mmap(nullptr, 1, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED;
     }},
    {"make memory executable", 'x',
     [](const Prey&) {
       void* const page = ::mmap(nullptr, 1, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
       return page != MAP_FAILED && ok(::mprotect(page, 1, PROT_READ | PROT_EXEC));
     }},
};

}  // namespace

Tried tryToEscape(const Prey& prey, const std::string& sparedKinds, bool eachInAFork) {
  Tried tried;
  for (const auto& attempt : attempts) {
    if (sparedKinds.find(attempt.kind) != std::string::npos) continue;
    ++tried.count;
    errno = 0;
    const auto inItsOwn = [&] {
      // What a started program says is nobody's business.
      ::close(STDOUT_FILENO);
      ::close(STDERR_FILENO);
      return attempt.succeeds(prey);
    };
    if (eachInAFork ? succeedsInAFork(inItsOwn) : attempt.succeeds(prey))
      tried.succeeded.emplace_back(attempt.name);
  }
  return tried;
}

}  // namespace murmel
