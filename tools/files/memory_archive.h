// Archives in memory: the bytes of anything that writes itself, and the other way round.
//
//   const std::string bytes = archived([&](Archive& archive) { entry.write(archive); });
//   from_archive(bytes, [&](Archive& archive) { journal.read(archive); });
#pragma once

#include <utilities/archive.h>

#include <functional>
#include <string>

// Throws what `write` throws, and std::bad_alloc.
[[nodiscard]] std::string archived(const std::function<void(Archive&)>& write);

// `bytes` must not be empty.
void from_archive(const std::string& bytes, const std::function<void(Archive&)>& read);
