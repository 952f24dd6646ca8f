#include "sim/sim_files.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sim {

namespace {

std::string gCliDir = "/mnt/application/quill/tmp";
// A script is a few KiB; a larger file is no CLI file, and reading it
// whole would take the daemon's memory.
constexpr size_t kMostCliFileBytes = 1 << 20;

int refuse(const std::string &path, const char *why) {
  fprintf(stderr, "open-sim: refused CLI file %s: %s\n", path.c_str(), why);
  return -1;
}

// The name inside the folder, false when the path leads anywhere else.
bool nameInCliDir(const std::string &path, std::string *name) {
  const std::string &dir = gCliDir;
  if (path.size() <= dir.size() + 1 || path.compare(0, dir.size(), dir) != 0 || path[dir.size()] != '/') return false;
  name->assign(path, dir.size() + 1);
  return name->find('/') == std::string::npos && *name != "." && *name != "..";
}

// Opened through the folder, never through a link, and without waiting on
// a FIFO's other end; -1 after saying why.
int openCliFile(const std::string &path, int flags) {
  std::string name;
  if (!nameInCliDir(path, &name)) return refuse(path, "not a name inside the CLI work folder");
  int dir = open(gCliDir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dir < 0) return refuse(path, strerror(errno));
  int fd = openat(dir, name.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0660);
  int error = errno;
  close(dir);
  if (fd < 0) return refuse(path, error == ELOOP ? "a symbolic link" : strerror(error));
  struct stat st = {};
  if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    close(fd);
    return refuse(path, "not a regular file");
  }
  return fd;
}

}  // namespace

void setCliDir(const std::string &dir) {
  gCliDir = dir.size() > 1 && dir.back() == '/' ? dir.substr(0, dir.size() - 1) : dir;
}
const std::string &cliDir() { return gCliDir; }

bool readCliFile(const std::string &path, std::string *out) {
  int fd = openCliFile(path, O_RDONLY);
  if (fd < 0) return false;
  out->clear();
  char buf[4096];
  ssize_t n;
  while ((n = read(fd, buf, sizeof buf)) > 0) {
    if (out->size() + static_cast<size_t>(n) > kMostCliFileBytes) {
      close(fd);
      refuse(path, "larger than 1 MiB");
      return false;
    }
    out->append(buf, static_cast<size_t>(n));
  }
  close(fd);
  return n == 0;
}

bool writeCliFile(const std::string &path, const std::string &content) {
  int fd = openCliFile(path, O_WRONLY | O_CREAT);
  if (fd < 0) return false;
  // The program, in the folder's group, reads and removes what is written
  // here; a file the program made stays as the program made it.
  struct stat st = {};
  bool ok = ftruncate(fd, 0) == 0 && fstat(fd, &st) == 0 && (st.st_uid != geteuid() || fchmod(fd, 0660) == 0);
  for (size_t done = 0; ok && done < content.size();) {
    ssize_t n = write(fd, content.data() + done, content.size() - done);
    ok = n > 0;
    done += ok ? static_cast<size_t>(n) : 0;
  }
  return close(fd) == 0 && ok;
}

}  // namespace sim
