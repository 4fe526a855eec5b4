/* inside DIRECTORY PROGRAM ARGUMENT... becomes the program, started from the directory. */
#include <stdio.h>
#include <unistd.h>

int main(int count, char** arguments) {
  if (count < 3) return 2;
  if (chdir(arguments[1]) != 0) {
    perror(arguments[1]);
    return 1;
  }
  execvp(arguments[2], arguments + 2);
  perror(arguments[2]);
  return 127;
}
