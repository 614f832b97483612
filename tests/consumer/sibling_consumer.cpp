#include <utilities/date.h>

#include <iostream>

int main() {
  Date(2003, 5, 17).print(std::cout);
  std::cout << '\n';
}
