// vspack, the packer of installers.

#include "packer/Commands.h"

int main(int argumentCount, char** arguments) {
  return vessant::runPacker(argumentCount, arguments);
}
