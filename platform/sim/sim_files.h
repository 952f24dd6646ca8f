// The files of the CLI exchange. Whoever reaches the simulator's socket
// names them, and the simulator writes with its own rights: only a plain
// name directly inside the CLI work folder is ever opened.
#ifndef PLATFORM_SIM_SIM_FILES_H
#define PLATFORM_SIM_SIM_FILES_H

#include <string>

namespace sim {

// The folder the program and the switch OS exchange CLI files in.
void setCliDir(const std::string &dir);
const std::string &cliDir();

// False, with one line on standard error, for a path outside the folder,
// a link, or anything but a regular file.
bool readCliFile(const std::string &path, std::string *out);
bool writeCliFile(const std::string &path, const std::string &content);

}  // namespace sim

#endif
