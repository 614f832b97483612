// How lists look in summaries, and lists joined into one text.
#pragma once

#include <ostream>
#include <sstream>
#include <string>

// For each element its index from 0, ": ", the element as `print_element(os, element)` writes it, and a tab.
template <class Sequence, class PrintElement>
void print_sequence(std::ostream& os, const Sequence& sequence, const PrintElement& print_element) {
  int index = 0;
  for (const auto& element : sequence) {
    os << index++ << ": ";
    print_element(os, element);
    os << "\t";
  }
}

// The same for elements that have a print operation, or that the stream can write itself.
template <class Sequence>
void print_sequence(std::ostream& os, const Sequence& sequence) {
  print_sequence(os, sequence, [](std::ostream& stream, const auto& element) {
    if constexpr (requires { element.print(stream); }) {
      element.print(stream);
    } else {
      stream << element;
    }
  });
}

// The elements of [first, last) with `separator` between them and, when `trailing`, one more after the last.
template <class Iterator>
[[nodiscard]] std::string to_string(Iterator first, Iterator last, const std::string& separator,
                                    bool trailing) {
  std::ostringstream text;
  for (Iterator element = first; element != last;) {
    text << *element;
    if (++element != last || trailing) text << separator;
  }
  return text.str();
}
