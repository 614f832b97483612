// Every storage, each in a source of its own; which of them are there was found when the benchmark was built.
#pragma once

#include "storages/storage.h"

// The library, and the library built with documented stream calls only, which comes in a shared library.
std::unique_ptr<Storage> archive_storage(const StoredEntries& entries);
__attribute__((visibility("default"))) std::unique_ptr<Storage> portable_archive_storage(
    const StoredEntries& entries);

// The library with entries made by setters, each component in memory of its own, and read into new entries.
std::unique_ptr<Storage> separate_storage(const StoredEntries& entries);

// What no library can do without: moving the bytes, and making the blocks that an entry needs.
std::unique_ptr<Storage> bare_storage(const StoredEntries& entries);
// The archive form moved between memory and plain values by hand.
std::unique_ptr<Storage> hand_written_storage(const StoredEntries& entries);

std::unique_ptr<Storage> boost_storage(const StoredEntries& entries);
std::unique_ptr<Storage> capnproto_storage(const StoredEntries& entries);
std::unique_ptr<Storage> cereal_storage(const StoredEntries& entries);
std::unique_ptr<Storage> flatbuffers_storage(const StoredEntries& entries);
std::unique_ptr<Storage> msgpack_storage(const StoredEntries& entries);
std::unique_ptr<Storage> protobuf_arena_storage(const StoredEntries& entries);
std::unique_ptr<Storage> protobuf_heap_storage(const StoredEntries& entries);
