/* measure COUNT COMMAND... runs a command COUNT times, its output thrown away, and prints the mean
 * user and system time and the mean elapsed time, in microseconds, and the largest resident memory,
 * in kilobytes. It is a tiny static program because a child's peak counts what it had before exec. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double microseconds(struct timeval time) { return time.tv_sec * 1e6 + time.tv_usec; }

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * 1e6 + time.tv_nsec / 1e3;
}

int main(int count, char** arguments) {
  if (count < 3) return 2;
  const int runs = atoi(arguments[1]);
  double cpu = 0;
  double elapsed = 0;
  long memory = 0;
  for (int i = 0; i < runs; ++i) {
    const double start = now();
    const pid_t child = vfork();
    if (child < 0) return 1;
    if (child == 0) {
      dup2(open("/dev/null", O_WRONLY), 1);
      execvp(arguments[2], arguments + 2);
      _exit(127);
    }
    struct rusage usage;
    int status = 0;
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) == 127) return 1;
    elapsed += now() - start;
    cpu += microseconds(usage.ru_utime) + microseconds(usage.ru_stime);
    if (usage.ru_maxrss > memory) memory = usage.ru_maxrss;
  }
  printf("%.0f %.0f %ld\n", cpu / runs, elapsed / runs, memory);
  return 0;
}
