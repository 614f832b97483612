// load_and_unload PLUG_IN TIMES: loads the plug-in, and the library with it, uses it and lets it go. The
// library is then gone from the process, and the second half of the rounds takes no more memory. To be run
// without the caches of the C library's free store, which counts what lies in them as in use:
//   GLIBC_TUNABLES=glibc.malloc.tcache_count=0:glibc.malloc.mxfast=0
#include <dlfcn.h>
#include <malloc.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace {

constexpr const char* library = "libdatabase_entry.so.1";

// Empty when all went well.
std::string one_round(const char* plug_in) {
  void* const handle = dlopen(plug_in, RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) return dlerror();
  const auto use = reinterpret_cast<int (*)()>(dlsym(handle, "use_the_library"));
  if (use == nullptr) return dlerror();
  if (use() != 3) return "the library found something else";
  if (dlclose(handle) != 0) return dlerror();
  if (dlopen(library, RTLD_NOLOAD | RTLD_NOW) != nullptr) return "the library stayed in the process";
  return {};
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const int times = std::atoi(arguments[2]);
  std::size_t settled = 0;
  for (int round = 0; round < times; ++round) {
    const std::string problem = one_round(arguments[1]);
    if (!problem.empty()) {
      std::cerr << "round " << round << ": " << problem << '\n';
      return 1;
    }
    if (round == times / 2) settled = mallinfo2().uordblks;
  }
  const std::size_t at_end = mallinfo2().uordblks;
  std::cout << times << " rounds, " << settled << " bytes in use after half of them, " << at_end
            << " at the end\n";
  return at_end > settled ? 1 : 0;
}
