// What a test of every subject needs of the present one.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "subjects.h"

class SubjectTest : public testing::TestWithParam<Subject> {
 protected:
  // The bytes of its full example.
  [[nodiscard]] static const std::string& whole() { return GetParam().layout.bytes(); }
  [[nodiscard]] static std::unique_ptr<Archived> full() {
    auto object = GetParam().make();
    read_stream(*object, whole());
    return object;
  }
};
