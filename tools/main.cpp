// dbentry: makes, reads and compares stored archives of crystal-structure entries.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

#include "tools/commands/command_line.h"
#include "tools/files/atomic_file.h"
#include "tools/output/standard_output.h"

namespace {

// A standard stream that was closed before the start would otherwise be the next file that is opened, and
// messages would end up in it. Opened the wrong way round, so that using it still fails.
void fill_closed_standard_streams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) != -1) continue;
    ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

std::size_t terminal_columns() {
  winsize size = {};
  return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace

int main(int argument_count, char** arguments) {
  fill_closed_standard_streams();
  prepare_signals();
  try {
    StandardOutput buffer(STDOUT_FILENO);
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit);
    Terminal terminal{out, std::cerr, ::isatty(STDOUT_FILENO) != 0, ::isatty(STDERR_FILENO) != 0,
                      terminal_columns()};
    return static_cast<int>(run_command_line(argument_count, arguments, terminal));
  } catch (const std::exception& error) {
    std::cerr << "dbentry: " << error.what() << '\n';
    return static_cast<int>(ExitCode::problems);
  }
}
