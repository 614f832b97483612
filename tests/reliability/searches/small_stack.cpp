// small_stack: every search over a text of 1 MB, on a thread whose stack is 64 KiB.
#include <pthread.h>

#include <iostream>

#include "searched_texts.h"

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t stack_bytes = 256 * 1024;  // the sanitizers' own frames and red zones come on top
#else
constexpr std::size_t stack_bytes = 64 * 1024;
#endif
constexpr std::size_t text_bytes = 1'000'000;

void* search_everything(void* count) {
  for (const Search& search : searches()) {
    search.run(repeated(search.piece, text_bytes));
    ++*static_cast<int*>(count);
  }
  return nullptr;
}

}  // namespace

int main() {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  if (pthread_attr_setstacksize(&attributes, stack_bytes) != 0) return 2;
  pthread_t thread;
  int count = 0;
  // An overflow meets the guard page after the stack and ends the process.
  if (pthread_create(&thread, &attributes, search_everything, &count) != 0) return 2;
  pthread_join(thread, nullptr);
  std::cout << count << " searches on " << stack_bytes << " bytes of stack\n";
  return 0;
}
