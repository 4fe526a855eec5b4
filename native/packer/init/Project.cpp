#include "packer/init/Project.h"

namespace vessant {

std::string installerNameOf(const Project& project) {
  return project.name + "-installer";
}

std::string jarNameOf(const Project& project) {
  return project.name + ".jar";
}

std::string runtimeNameOf(const Project& project) {
  return project.name + "-jre";
}

}  // namespace vessant
