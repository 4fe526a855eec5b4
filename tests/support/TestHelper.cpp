// Imitates other programs, for the tests of child processes. Its arguments are done in order:
//
//   exit N          end with status N
//
//   die N           end by signal N
//
//   out N, err N    write N bytes to standard output or error: lines of 'o' or 'e'
//
//   text T          write T and a line break to standard output
//
//   zero            write "before", a zero byte, "after" in one piece
//
//   close           close standard output and error
//
//   linger FILE     leave a grandchild that holds the streams until FILE is gone, then writes
//   "late"
//
//   args            print the remaining arguments, each ended by a zero byte
//
//   env NAME        print the value of a variable, or "(unset)"
//
//   cwd             print the current directory
//
//   fds             print the open descriptors above 2, one a line

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dirent.h>
#include <poll.h>
#include <unistd.h>

namespace {

void writeAll(int fd, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = ::write(fd, text.data() + done, text.size() - done);
    if (count <= 0) std::exit(99);
    done += static_cast<std::size_t>(count);
  }
}

void writeFill(int fd, std::size_t count, char letter) {
  constexpr std::size_t kLine = 64;
  std::string text(count, letter);
  for (std::size_t i = kLine - 1; i < text.size(); i += kLine) text[i] = '\n';
  writeAll(fd, text);
}

void linger(const char* file) {
  if (::fork() != 0) return;
  while (::access(file, F_OK) == 0) ::poll(nullptr, 0, 1);
  writeAll(1, "late\n");
  ::_exit(0);
}

void printDescriptors() {
  DIR* directory = ::opendir("/proc/self/fd");
  while (const dirent* entry = ::readdir(directory)) {
    const int fd = std::atoi(entry->d_name);
    if (fd > 2 && fd != ::dirfd(directory)) std::printf("%d\n", fd);
  }
  ::closedir(directory);
  std::fflush(stdout);
}

}  // namespace

int main(int count, char** arguments) {
  for (int i = 1; i < count; ++i) {
    const std::string action = arguments[i];
    const char* value = i + 1 < count ? arguments[i + 1] : "";
    if (action == "exit") return std::atoi(value);
    if (action == "die") ::raise(std::atoi(value));
    if (action == "out") writeFill(1, std::strtoul(value, nullptr, 10), 'o');
    if (action == "err") writeFill(2, std::strtoul(value, nullptr, 10), 'e');
    if (action == "text") writeAll(1, std::string(value) + "\n");
    if (action == "zero") writeAll(1, std::string("before\0after", 12));
    if (action == "close") ::close(1), ::close(2);
    if (action == "linger") linger(value);
    if (action == "env") {
      const char* setting = std::getenv(value);
      writeAll(1, std::string(setting == nullptr ? "(unset)" : setting) + "\n");
    }
    if (action == "cwd") {
      char directory[4096] = {};
      writeAll(1, std::string(::getcwd(directory, sizeof(directory))) + "\n");
    }
    if (action == "fds") printDescriptors();
    if (action == "args") {
      for (++i; i < count; ++i) writeAll(1, std::string(arguments[i]) + '\0');
    }
    const bool takesValue = action != "zero" && action != "close" && action != "cwd" &&
                            action != "fds" && action != "args";
    if (takesValue) ++i;
  }
  return 0;
}
