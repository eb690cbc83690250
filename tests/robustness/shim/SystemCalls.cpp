// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/robustness/shim/SystemCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <csignal>

#include <QFile>
#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace {

using faults::Fault;

constexpr qint64 EndlessRoom = -1;

/// Plain memory: the calls come from everywhere, also from places that must not allocate.
struct State {
  bool armed = false;
  std::array<char, PATH_MAX> folder{};
  std::size_t folderLength = 0;
  int number = 0;
  Fault fault = Fault::None;
  int error = 0;
  qint64 room = EndlessRoom;
  int count = 0;
  bool failNextWrite = false;
  const char* met = "";
  std::array<const char*, 1024> names{};
};
State state;

bool isBelow(const char* path) {
  if (!path || std::strncmp(path, state.folder.data(), state.folderLength) != 0) return false;
  const char next = path[state.folderLength];
  return next == '\0' || next == '/';
}

bool isBelow(int descriptor) {
  std::array<char, 64> link{};
  std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
  std::array<char, PATH_MAX> path{};
  const long length = ::syscall(SYS_readlink, link.data(), path.data(), path.size() - 1);
  return length > 0 && isBelow(path.data());
}

[[noreturn]] void killThisProcess() {
  ::syscall(SYS_kill, ::syscall(SYS_getpid), SIGKILL);
  for (;;) ::syscall(SYS_pause);
}

/// Counts a call on a place below the folder; true when it fails instead of being made.
template <typename Place>
bool fails(const char* name, Place place, bool writes = false) {
  if (!state.armed || !isBelow(place)) return false;
  if (static_cast<std::size_t>(state.count) < state.names.size()) {
    state.names[static_cast<std::size_t>(state.count)] = name;
  }
  if (++state.count != state.number) return false;
  if (state.fault == Fault::None) return false;
  if (writes && (state.fault == Fault::ShortWrite || state.fault == Fault::KillHalfway)) return false;
  if (state.fault == Fault::ShortWrite) return false;
  state.met = name;
  if (state.fault != Fault::Error) killThisProcess();
  errno = state.error;
  return true;
}

/// The real thing, with the C library's way of reporting errors, which syscall() has too.
template <typename... Arguments>
int call(long number, Arguments... arguments) {
  return static_cast<int>(::syscall(number, arguments...));
}

int openAt(const char* name, int folder, const char* path, int flags, mode_t mode) {
  if (fails(name, path)) return -1;
  return call(SYS_openat, folder, path, flags, mode);
}

mode_t modeOf(int flags, va_list arguments) {
  const bool given = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
  return given ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

ssize_t writeSome(int descriptor, const void* bytes, std::size_t size) {
  return static_cast<ssize_t>(::syscall(SYS_write, descriptor, bytes, size));
}

ssize_t writeWithFaults(int descriptor, const void* bytes, std::size_t size) {
  if (!state.armed || !isBelow(descriptor)) return writeSome(descriptor, bytes, size);
  if (fails("write", descriptor, true)) return -1;
  if (state.failNextWrite) {
    state.failNextWrite = false;
    errno = ENOSPC;
    return -1;
  }
  if (state.room != EndlessRoom) {
    if (state.room == 0 && size > 0) {
      state.met = "write";
      errno = ENOSPC;
      return -1;
    }
    const ssize_t written =
        writeSome(descriptor, bytes, std::min(size, static_cast<std::size_t>(state.room)));
    if (written > 0) state.room -= written;
    return written;
  }
  if (state.count != state.number) return writeSome(descriptor, bytes, size);
  if (state.fault == Fault::ShortWrite) {
    state.met = "write";
    state.failNextWrite = true;
    return writeSome(descriptor, bytes, size / 2);
  }
  if (state.fault == Fault::KillHalfway) {
    writeSome(descriptor, bytes, size / 2);
    killThisProcess();
  }
  return writeSome(descriptor, bytes, size);
}

}  // namespace

// The calls that programs make on files. Those of the C library's own streams do not come by here.
extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return openAt("open", AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return openAt("open", AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return openAt("openat", folder, path, flags, mode);
}

int openat64(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return openAt("openat", folder, path, flags, mode);
}

ssize_t write(int descriptor, const void* bytes, size_t size) {
  return writeWithFaults(descriptor, bytes, size);
}

int fsync(int descriptor) {
  struct stat status {};
  const bool folder = call(SYS_fstat, descriptor, &status) == 0 && S_ISDIR(status.st_mode);
  return fails(folder ? "fsync folder" : "fsync", descriptor) ? -1 : call(SYS_fsync, descriptor);
}
int fdatasync(int descriptor) {
  return fails("fdatasync", descriptor) ? -1 : call(SYS_fdatasync, descriptor);
}
int fchmod(int descriptor, mode_t mode) {
  return fails("fchmod", descriptor) ? -1 : call(SYS_fchmod, descriptor, mode);
}
int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
  return fails("fchown", descriptor) ? -1 : call(SYS_fchown, descriptor, owner, group);
}
ssize_t getxattr(const char* path, const char* name, void* value, size_t size) noexcept {
  return fails("getxattr", path) ? -1 : call(SYS_getxattr, path, name, value, size);
}
int fsetxattr(int descriptor, const char* name, const void* value, size_t size, int flags) noexcept {
  return fails("fsetxattr", descriptor) ? -1 : call(SYS_fsetxattr, descriptor, name, value, size, flags);
}
int fremovexattr(int descriptor, const char* name) noexcept {
  return fails("fremovexattr", descriptor) ? -1 : call(SYS_fremovexattr, descriptor, name);
}
int flock(int descriptor, int operation) noexcept {
  return fails("flock", descriptor) ? -1 : call(SYS_flock, descriptor, operation);
}
int fstat(int descriptor, struct stat* status) noexcept {
  return fails("fstat", descriptor) ? -1 : call(SYS_fstat, descriptor, status);
}

int close(int descriptor) {
  const bool failing = fails("close", descriptor);
  const int error = errno;
  // A descriptor is gone even when closing it reports an error.
  const int closed = call(SYS_close, descriptor);
  if (!failing) return closed;
  errno = error;
  return -1;
}

int stat(const char* path, struct stat* status) noexcept {
  return fails("stat", path) ? -1 : call(SYS_stat, path, status);
}
int lstat(const char* path, struct stat* status) noexcept {
  return fails("lstat", path) ? -1 : call(SYS_lstat, path, status);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  return fails("statx", path) ? -1 : call(SYS_statx, folder, path, flags, mask, status);
}
int access(const char* path, int mode) noexcept {
  return fails("access", path) ? -1 : call(SYS_access, path, mode);
}
int chmod(const char* path, mode_t mode) noexcept {
  return fails("chmod", path) ? -1 : call(SYS_chmod, path, mode);
}
int mkdir(const char* path, mode_t mode) noexcept {
  return fails("mkdir", path) ? -1 : call(SYS_mkdir, path, mode);
}
int unlink(const char* path) noexcept { return fails("unlink", path) ? -1 : call(SYS_unlink, path); }
int remove(const char* path) noexcept { return fails("remove", path) ? -1 : call(SYS_unlink, path); }
int rmdir(const char* path) noexcept { return fails("rmdir", path) ? -1 : call(SYS_rmdir, path); }
int link(const char* from, const char* to) noexcept {
  return fails("link", to) ? -1 : call(SYS_link, from, to);
}
int rename(const char* from, const char* to) noexcept {
  return fails("rename", to) ? -1 : call(SYS_rename, from, to);
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
  return fails("renameat", to) ? -1 : call(SYS_renameat, fromFolder, from, toFolder, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  return fails("renameat2", to) ? -1 : call(SYS_renameat2, fromFolder, from, toFolder, to, flags);
}

}  // extern "C"

namespace faults {

SystemCalls::SystemCalls(const QString& folder, int number, Fault fault, int error, qint64 room) {
  const QByteArray path = QFile::encodeName(folder);
  if (state.armed || path.size() >= PATH_MAX)
    throw std::logic_error("the system calls are being watched already");
  state = State();
  std::copy(path.begin(), path.end(), state.folder.begin());
  state.folderLength = static_cast<std::size_t>(path.size());
  state.number = number;
  state.fault = fault;
  state.error = error;
  state.room = room;
  state.armed = true;
}

SystemCalls::SystemCalls(const QString& folder) : SystemCalls(folder, 0, Fault::None, 0, EndlessRoom) {}

SystemCalls::SystemCalls(const QString& folder, int number, Fault fault, int error)
    : SystemCalls(folder, number, fault, error, EndlessRoom) {}

SystemCalls SystemCalls::onDiskWithRoomFor(const QString& folder, qint64 bytes) {
  return SystemCalls(folder, 0, Fault::None, ENOSPC, bytes);
}

SystemCalls::~SystemCalls() { state.armed = false; }

int SystemCalls::count() const { return state.count; }

QByteArrayList SystemCalls::names() const {
  QByteArrayList all;
  for (const char* name : state.names) {
    if (name) all.append(name);
  }
  return all;
}

QByteArray SystemCalls::met() const { return state.met; }

}  // namespace faults
