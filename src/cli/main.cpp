#include <unistd.h>

#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "cli/network.h"
#include "cli/tool.h"

int main(int count, char** words) {
  std::ios::sync_with_stdio(false);
  DiskFileSystem files;
  const SystemClock clock;
  try {
    return cli::RunTool(std::vector<std::string>(words + 1, words + count), std::cout, std::cerr, files, clock,
                        cli::MakeNetwork, ::isatty(STDOUT_FILENO) == 1);
  } catch (const std::exception& e) {
    std::cerr << "kdvbase: " << e.what() << '\n';
    return 1;
  }
}
